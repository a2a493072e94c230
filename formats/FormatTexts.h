#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the file types and the quality choices, with
// their keys.
namespace tbx::formatTexts {

using fenn::TextKey;

// ---- file dialog filters of the input types ----
inline constexpr TextKey fileFilterMP3{"tbx.FileFilter.MP3", "MP3 files (*.mp3)"};
inline constexpr TextKey fileFilterOggVorbis{"tbx.FileFilter.OggVorbis", "Ogg Vorbis files (*.ogg)"};
inline constexpr TextKey fileFilterWAV{"tbx.FileFilter.WAV", "WAV files (*.wav)"};
inline constexpr TextKey fileFilterWMA{"tbx.FileFilter.WMA", "Windows Media Audio files (*.wma)"};
inline constexpr TextKey fileFilterFlac{"tbx.FileFilter.Flac", "Flac files (*.flac)"};

// ---- short descriptions of the output types ----
inline constexpr TextKey mp3ShortDesc{"tbx.CMP3OutputFileType.shortDesc",
                                      "MP3 files offer good quality at a decent file size."};
inline constexpr TextKey wmaShortDesc{"tbx.CWMAOutputFileType.shortDesc",
                                      "WMA files offer better quality than MP3. They are playable on all recent "
                                      "versions of Windows, but older versions may require software updates."};
inline constexpr TextKey vorbisShortDesc{
    "tbx.CVorbisOutputFileType.shortDesc",
    "Ogg Vorbis offers slightly better quality than MP3 at the same size. Most players support it, but Windows Media "
    "Player cannot play the files without additional plugins."};
inline constexpr TextKey wavShortDesc{"tbx.CWAVOutputFileType.shortDesc",
                                      "WAV files have perfect quality at high quality settings but are VERY big."};
inline constexpr TextKey flacShortDesc{"tbx.CFlacOutputFileType.shortDesc",
                                       "FLAC offers the same perfect quality as WAV at about 50% - 80% of the file "
                                       "size. Most players need additional plugins to play FLAC files, though."};

// ---- the quality selector: names and descriptions, indexed by selector ----
inline constexpr TextKey qualityNameKeep{"tbx.CQualityPage.QualityNames.Auto", "Keep Quality"};
inline constexpr TextKey qualityNameCD{"tbx.CQualityPage.QualityNames.CD", "CD Quality"};
inline constexpr TextKey qualityNameGood{"tbx.CQualityPage.QualityNames.Good", "Good Quality"};
inline constexpr TextKey qualityNameMedium{"tbx.CQualityPage.QualityNames.Medium", "Medium Quality"};
inline constexpr TextKey qualityNameLow{"tbx.CQualityPage.QualityNames.Low", "Low Quality"};
inline constexpr TextKey qualityNameCustom{"tbx.CQualityPage.QualityNames.Custom", "Custom Quality"};

inline constexpr TextKey qualityDescKeep{
    "tbx.CQualityPage.QualityDescs.Keep",
    "Keep the quality of the input files. If you select this option the program will automatically choose a quality "
    "setting for each file so that the quality stays the same (Recommended)."};
inline constexpr TextKey qualityDescCD{"tbx.CQualityPage.QualityDescs.CD",
                                       "The resulting file will have almost perfect quality."};
inline constexpr TextKey qualityDescGood{"tbx.CQualityPage.QualityDescs.Good",
                                         "The file will sound good. Most people only notice a quality difference in a "
                                         "direct comparison with CD quality."};
inline constexpr TextKey qualityDescMedium{
    "tbx.CQualityPage.QualityDescs.Medium",
    "Doesn't sound too bad but there is a perceptible difference to the original."};
inline constexpr TextKey qualityDescLow{"tbx.CQualityPage.QualityDescs.Low",
                                        "The file will contain some bigger distortions but the file size will be "
                                        "pretty small. Only use this if size is a big issue!"};
inline constexpr TextKey qualityDescCustom{"tbx.CQualityPage.QualityDescs.Custom",
                                           "Choose this if you want to manually define encoding parameters. Should "
                                           "only be used by advanced users."};

inline constexpr TextKey qualityNames[] = {qualityNameKeep,   qualityNameCD,  qualityNameGood,
                                           qualityNameMedium, qualityNameLow, qualityNameCustom};
inline constexpr TextKey qualityDescriptions[] = {qualityDescKeep,   qualityDescCD,  qualityDescGood,
                                                  qualityDescMedium, qualityDescLow, qualityDescCustom};

// ---- descriptions of encoder settings ----
// %SR% is the sample rate in whole kHz (44100 shows as 44).
inline constexpr TextKey wavQualityDescLong{"tbx.CWAVOutputFileType.QualityDescLong",
                                            "%SR% kHz, %BITS% bit, %CHAN% channels"};
inline constexpr TextKey wavQualityDesc{"tbx.CWAVOutputFileType.QualityDesc", "%SR% kHz, %BITS% bit"};
inline constexpr TextKey flacQualityDescLong{"tbx.CFlacOutputFileType.QualityDescLong",
                                             "%SR% kHz, %BITS% bit, %CHAN% channels"};
inline constexpr TextKey flacQualityDesc{"tbx.CFlacOutputFileType.QualityDesc", "%SR% kHz, %BITS% bit"};
inline constexpr TextKey vorbisQualityDescLong{"tbx.CVorbisOutputFileType.QualityDescLong",
                                               "quality index %QUAL%, %SR% kHz, %CHAN% channels"};
inline constexpr TextKey vorbisQualityDesc{"tbx.CVorbisOutputFileType.QualityDesc", "quality index %QUAL%, %SR% kHz"};
// %BR% is the bit rate in whole kBit/s, %VCBR% "VBR" or "CBR", %SR% one of
// the two sample rate texts below it.
inline constexpr TextKey mp3QualityDescLong{"tbx.CMP3OutputFileType.QualityDescLong",
                                            "%BR% kBit/s, %VCBR%, %SR%, %CHAN% channels"};
inline constexpr TextKey mp3QualityDescLongSampleRate{"tbx.CMP3OutputFileType.QualityDescLong.SampleRate", "%R% kHz"};
inline constexpr TextKey mp3QualityDescLongAutoSampleRate{"tbx.CMP3OutputFileType.QualityDescLong.AutoSampleRate",
                                                          "auto samplerate"};
// The trailing separator belongs to the text: the short form is shown
// before further facts of the file.
inline constexpr TextKey mp3QualityDesc{"tbx.CMP3OutputFileType.QualityDesc", "%BR% kBit/s, "};
// %QUAL% is the VBR quality in percent, %BR% the constant bit rate in kBit/s.
inline constexpr TextKey wmaQualityDescLongVBR{"tbx.CWMAOutputFileType.QualityDescLong.VBR",
                                               "VBR quality %QUAL%%, %SR% kHz, %CHAN% channels"};
inline constexpr TextKey wmaQualityDescLongCBR{"tbx.CWMAOutputFileType.QualityDescLong.CBR",
                                               "%BR% kBit/s CBR, %SR% kHz, %CHAN% channels"};
inline constexpr TextKey wmaQualityDescVBR{"tbx.CWMAOutputFileType.QualityDesc.VBR", "VBR quality %QUAL%%"};
inline constexpr TextKey wmaQualityDescCBR{"tbx.CWMAOutputFileType.QualityDesc.CBR", "%BR% kBit/s CBR"};

inline constexpr TextKey all[] = {fileFilterMP3,
                                  fileFilterOggVorbis,
                                  fileFilterWAV,
                                  fileFilterWMA,
                                  fileFilterFlac,
                                  mp3ShortDesc,
                                  wmaShortDesc,
                                  vorbisShortDesc,
                                  wavShortDesc,
                                  flacShortDesc,
                                  qualityNameKeep,
                                  qualityNameCD,
                                  qualityNameGood,
                                  qualityNameMedium,
                                  qualityNameLow,
                                  qualityNameCustom,
                                  qualityDescKeep,
                                  qualityDescCD,
                                  qualityDescGood,
                                  qualityDescMedium,
                                  qualityDescLow,
                                  qualityDescCustom,
                                  wavQualityDescLong,
                                  wavQualityDesc,
                                  flacQualityDescLong,
                                  flacQualityDesc,
                                  vorbisQualityDescLong,
                                  vorbisQualityDesc,
                                  mp3QualityDescLong,
                                  mp3QualityDescLongSampleRate,
                                  mp3QualityDescLongAutoSampleRate,
                                  mp3QualityDesc,
                                  wmaQualityDescLongVBR,
                                  wmaQualityDescLongCBR,
                                  wmaQualityDescVBR,
                                  wmaQualityDescCBR};

}  // namespace tbx::formatTexts
