# The basic widgets: check boxes, select fields and their groups, text
# fields and areas, progress and slider bars, image buttons and displays,
# canvases and tab views, registered by registerBasicWidgets.
target_sources(tb_gui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CCanvas.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CCheckBox.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CImageButton.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CImageDisplay.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CIndicatorButton.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CProgressBar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CSelectField.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CSelectGroup.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CSliderBar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTabView.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTextArea.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTextField.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RegisterBasicWidgets.cpp
)
