# The text editing widgets: "editfield", "editarea" and "droplist", with the
# text model and the editing window they share.
target_sources(tb_gui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CDropList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CDropListPopup.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CEditArea.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CEditField.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTextEditInput.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTextEditModel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CTextEditWindow.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RegisterEditWidgets.cpp
)
