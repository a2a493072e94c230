#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the GUI toolkit, with their keys.
namespace fenn::gui::texts {

inline constexpr TextKey imageConversionNoDetails{"fenn.gui.CImageConversionError.Desc.NoDetails",
                                                  "Error converting image data."};
inline constexpr TextKey imageConversion{"fenn.gui.CImageConversionError.Desc",
                                         "Error converting image data (%DETAILS%)."};

inline constexpr TextKey colorParseError{"fenn.CColor.parseError", "Error parsing color value."};

inline constexpr TextKey messageBoxOK{"fenn.gui.CMessageBox.OK", "OK"};
inline constexpr TextKey messageBoxCancel{"fenn.gui.CMessageBox.Cancel", "Cancel"};
inline constexpr TextKey messageBoxYes{"fenn.gui.CMessageBox.Yes", "Yes"};
inline constexpr TextKey messageBoxNo{"fenn.gui.CMessageBox.No", "No"};
inline constexpr TextKey messageBoxRetry{"fenn.gui.CMessageBox.Retry", "Retry"};

inline constexpr TextKey fileDialogOpenTitle{"fenn.gui.CFileDialog.OpenTitle", "Open File"};
inline constexpr TextKey fileDialogOpenFilesTitle{"fenn.gui.CFileDialog.OpenFilesTitle", "Open Files"};
inline constexpr TextKey fileDialogSaveTitle{"fenn.gui.CFileDialog.SaveTitle", "Save File"};
inline constexpr TextKey fileDialogFolderTitle{"fenn.gui.CFileDialog.FolderTitle", "Choose Folder"};
inline constexpr TextKey fileDialogOpen{"fenn.gui.CFileDialog.Open", "Open"};
inline constexpr TextKey fileDialogSave{"fenn.gui.CFileDialog.Save", "Save"};
inline constexpr TextKey fileDialogChoose{"fenn.gui.CFileDialog.Choose", "Choose"};
inline constexpr TextKey fileDialogCancel{"fenn.gui.CFileDialog.Cancel", "Cancel"};
inline constexpr TextKey fileDialogUp{"fenn.gui.CFileDialog.Up", "Go to the folder above"};
inline constexpr TextKey fileDialogNameColumn{"fenn.gui.CFileDialog.NameColumn", "Name"};
inline constexpr TextKey fileDialogSizeColumn{"fenn.gui.CFileDialog.SizeColumn", "Size"};
inline constexpr TextKey fileDialogModifiedColumn{"fenn.gui.CFileDialog.ModifiedColumn", "Modified"};
inline constexpr TextKey fileDialogFileName{"fenn.gui.CFileDialog.FileName", "Name:"};
inline constexpr TextKey fileDialogAllFiles{"fenn.gui.CFileDialog.AllFiles", "All files (*)"};
inline constexpr TextKey fileDialogPlaces{"fenn.gui.CFileDialog.Places", "Places"};
inline constexpr TextKey fileDialogDevices{"fenn.gui.CFileDialog.Devices", "Devices"};
inline constexpr TextKey fileDialogHome{"fenn.gui.CFileDialog.Home", "Home"};
inline constexpr TextKey fileDialogDesktop{"fenn.gui.CFileDialog.Desktop", "Desktop"};
inline constexpr TextKey fileDialogMusic{"fenn.gui.CFileDialog.Music", "Music"};
inline constexpr TextKey fileDialogRecent{"fenn.gui.CFileDialog.Recent", "Recent Folder"};
inline constexpr TextKey fileDialogFileSystem{"fenn.gui.CFileDialog.FileSystem", "File System"};
inline constexpr TextKey fileDialogToday{"fenn.gui.CFileDialog.Today", "Today, %TIME%"};
inline constexpr TextKey fileDialogYesterday{"fenn.gui.CFileDialog.Yesterday", "Yesterday, %TIME%"};
inline constexpr TextKey fileDialogEmptyFolder{"fenn.gui.CFileDialog.EmptyFolder", "Nothing to show here."};
inline constexpr TextKey fileDialogNoSuchPlace{"fenn.gui.CFileDialog.NoSuchPlace",
                                               "There is no folder or file \"%PATH%\"."};
inline constexpr TextKey fileDialogReplaceTitle{"fenn.gui.CFileDialog.ReplaceTitle", "Replace File"};
inline constexpr TextKey fileDialogReplaceQuestion{
    "fenn.gui.CFileDialog.ReplaceQuestion",
    "A file named \"%NAME%\" already exists in \"%FOLDER%\". Do you want to replace it?"};

inline constexpr TextKey all[] = {imageConversionNoDetails, imageConversion, colorParseError, messageBoxOK,
                                  messageBoxCancel, messageBoxYes, messageBoxNo, messageBoxRetry,
                                  fileDialogOpenTitle, fileDialogOpenFilesTitle, fileDialogSaveTitle,
                                  fileDialogFolderTitle, fileDialogOpen, fileDialogSave, fileDialogChoose,
                                  fileDialogCancel, fileDialogUp, fileDialogNameColumn, fileDialogSizeColumn,
                                  fileDialogModifiedColumn, fileDialogFileName, fileDialogAllFiles, fileDialogPlaces,
                                  fileDialogDevices, fileDialogHome, fileDialogDesktop, fileDialogMusic,
                                  fileDialogRecent, fileDialogFileSystem, fileDialogToday, fileDialogYesterday,
                                  fileDialogEmptyFolder, fileDialogNoSuchPlace, fileDialogReplaceTitle,
                                  fileDialogReplaceQuestion};

}  // namespace fenn::gui::texts
