# The list widgets: the cell view with its model and selection, the scroll
# panel, the split panel, and the scroll bar part the scrolling ones share.
target_sources(tb_gui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CCellView.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CCellViewInput.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CCellViewModel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CCellViewPaint.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CCellViewSelection.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CScrollBarPart.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CScrollPanel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CSplitPanel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RegisterListWidgets.cpp
)
