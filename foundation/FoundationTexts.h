#pragma once

#include <span>

#include "foundation/TextKey.h"

// The user-visible texts of the foundation, with their keys.
namespace fenn::texts {

inline constexpr TextKey endOfEnum{"fenn.CEndOfEnumError.desc", "end of enumeration already reached"};
inline constexpr TextKey uriTypeNotSupportedGeneral{"fenn.CURITypeNotSupportedError.GeneralDesc",
                                                    "This type URI is not supported."};
inline constexpr TextKey uriTypeNotSupported{"fenn.CURITypeNotSupportedError.Desc", "This type URI is not supported."};
inline constexpr TextKey uriFormatGeneral{"fenn.CURIFormatError.GeneralDesc", "The URI has an invalid format."};
inline constexpr TextKey uriFormat{"fenn.CURIFormatError.Desc", "The URI ('%URI%') has an invalid format."};
inline constexpr TextKey fileNotFoundGeneral{"fenn.CFileNotFoundError.GeneralDesc", "The file was not found."};
inline constexpr TextKey fileNotFound{"fenn.CFileNotFoundError.Desc", "The file '%FILE%' was not found."};
inline constexpr TextKey fileFormatNotSupportedGeneral{"fenn.CFileFormatNotSupportedError.Desc.FileUnknown",
                                                       "The file format is not supported."};
inline constexpr TextKey fileFormatNotSupported{"fenn.CFileFormatNotSupportedError.Desc",
                                                "The format of file '%FILE%' is not supported."};
inline constexpr TextKey folderCursorNotAFolder{"fenn.win32.CFileSystemFolderCursor.notAFolder",
                                                "The file object is not a folder."};
inline constexpr TextKey noSuchObject{"fenn.CNoSuchObjectError.desc", "No such object."};
inline constexpr TextKey readOnly{"fenn.readOnlyErrorObjectDesc",
                                  "The object (%DESC%) is read-only and cannot be changed."};
inline constexpr TextKey multiEnumAddLocked{
    "fenn.CMultiEnum.addLocked",
    "No more sub enums can be added to a multi enum after one of its IEnum methods has been called."};
inline constexpr TextKey constMultiEnumAddLocked{
    "fenn.CConstMultiEnum.addLocked",
    "No more sub enums can be added to a multi enum after one of its IConstEnum methods has been called."};
inline constexpr TextKey boolParseError{"fenn.CBool.parseError", "Error parsing boolean value."};
inline constexpr TextKey doubleParseError{"fenn.CDouble.parseError", "Error parsing floating point value."};
inline constexpr TextKey dataSizeBytes{"fenn.dataSize.Bytes", "Bytes"};
inline constexpr TextKey dataSizeKB{"fenn.dataSize.KB", "KB"};
inline constexpr TextKey dataSizeMB{"fenn.dataSize.MB", "MB"};
inline constexpr TextKey dataSizeGB{"fenn.dataSize.GB", "GB"};
inline constexpr TextKey dataSizeTB{"fenn.dataSize.TB", "TB"};
inline constexpr TextKey createThreadError{"fenn.win32.CThreadManager.CreateThreadError", "Error creating thread."};
inline constexpr TextKey createThreadErrorDesc{"fenn.win32.CThreadManager.CreateThreadErrorDesc",
                                               "Error creating thread (%ERRORDESC%)."};
inline constexpr TextKey createEventError{"fenn.win32.CSignalFactory.CreateEventError",
                                          "Error creating event (%ERRORDESC%)."};
inline constexpr TextKey createWindowError{"fenn.gui.win32.CreateWindowError", "Error creating window."};
inline constexpr TextKey windowTimerIntervalGEZero{"fenn.win32.CWindowTimer.IntervalGEZero",
                                                   "window timer intervals have to be >=0"};

inline constexpr TextKey all[] = {endOfEnum,
                                  uriTypeNotSupportedGeneral,
                                  uriTypeNotSupported,
                                  uriFormatGeneral,
                                  uriFormat,
                                  fileNotFoundGeneral,
                                  fileNotFound,
                                  fileFormatNotSupportedGeneral,
                                  fileFormatNotSupported,
                                  folderCursorNotAFolder,
                                  noSuchObject,
                                  readOnly,
                                  multiEnumAddLocked,
                                  constMultiEnumAddLocked,
                                  boolParseError,
                                  doubleParseError,
                                  dataSizeBytes,
                                  dataSizeKB,
                                  dataSizeMB,
                                  dataSizeGB,
                                  dataSizeTB,
                                  createThreadError,
                                  createThreadErrorDesc,
                                  createEventError,
                                  createWindowError,
                                  windowTimerIntervalGEZero};

}  // namespace fenn::texts
