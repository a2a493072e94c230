#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the batch jobs, with their keys. Progress
// actions hold "%ITEM%"; error lines hold "%ITEM%" and "%MSG%".
namespace tbx::processingTexts {

using fenn::TextKey;

inline constexpr TextKey processorAnalysing{"tbx.CAudioProcessor.ProgressAction.Analysing", "Analysing '%ITEM%'"};
inline constexpr TextKey processorProcessing{"tbx.CAudioProcessor.ProgressAction.Processing", "Processing '%ITEM%'"};
inline constexpr TextKey processorErrorAnalysing{"tbx.CAudioProcessor.ErrorAnalysingFile",
                                                 "Error analysing '%ITEM%': %MSG%"};
inline constexpr TextKey processorErrorProcessing{"tbx.CAudioProcessor.ErrorProcessingFile",
                                                  "Error processing '%ITEM%': %MSG%"};
inline constexpr TextKey processorAborted{"tbx.CAudioProcessor.ProcessAborted", "The process has been aborted."};
inline constexpr TextKey cannotWriteFileFormat{"tbx.CAudioProcessor.CannotWriteFileFormat",
                                               "The file format is not supported for writing."};
inline constexpr TextKey errorRenamingExistingFile{"tbx.CAudioProcessor.ErrorRenamingExistingFile",
                                                   "Error renaming the existing file."};

inline constexpr TextKey converterAnalysing{"tbx.CFileConverter.ProgressAction.Analysing", "Analysing file '%ITEM%'"};
inline constexpr TextKey converterConverting{"tbx.CFileConverter.ProgressAction.Converting",
                                             "Converting file '%ITEM%'"};
inline constexpr TextKey converterErrorAnalysing{"tbx.CFileConverter.ErrorAnalysingFile",
                                                 "Error analysing '%ITEM%': %MSG%"};
inline constexpr TextKey converterErrorConverting{"tbx.CFileConverter.ErrorConvertingFile",
                                                  "Error converting '%ITEM%': %MSG%"};
inline constexpr TextKey converterAborted{"tbx.CFileConverter.ConversionAborted",
                                          "The conversion process has been aborted."};

inline constexpr TextKey generatorAnalysing{"tbx.CAudioSourceProcessor.ProgressAction.Analysing",
                                            "Analysing file '%ITEM%'"};
inline constexpr TextKey generatorGenerating{"tbx.CAudioSourceProcessor.ProgressAction.Generating",
                                             "Generating '%ITEM%'"};
inline constexpr TextKey generatorErrorAnalysing{"tbx.CAudioSourceProcessor.ErrorAnalysingFile",
                                                 "Error analysing '%ITEM%': %MSG%"};
inline constexpr TextKey generatorErrorGenerating{"tbx.CAudioSourceProcessor.ErrorGeneratingFile",
                                                  "Error generating '%ITEM%': %MSG%"};
inline constexpr TextKey generatorAborted{"tbx.CAudioSourceProcessor.GenerationAborted",
                                          "The generation process has been aborted."};

inline constexpr TextKey all[] = {processorAnalysing,        processorProcessing,      processorErrorAnalysing,
                                  processorErrorProcessing,  processorAborted,         cannotWriteFileFormat,
                                  errorRenamingExistingFile, converterAnalysing,       converterConverting,
                                  converterErrorAnalysing,   converterErrorConverting, converterAborted,
                                  generatorAnalysing,        generatorGenerating,      generatorErrorAnalysing,
                                  generatorErrorGenerating,  generatorAborted};

}  // namespace tbx::processingTexts
