#include "formats/CFileTypeRegistry.h"
#include "formats/ffmpeg/CFFmpegInputFileType.h"
#include "formats/flac/CFlacInputFileType.h"
#include "formats/flac/CFlacOutputFileType.h"
#include "formats/mp3/CMP3InputFileType.h"
#include "formats/mp3/CMP3OutputFileType.h"
#include "formats/vorbis/CVorbisInputFileType.h"
#include "formats/vorbis/CVorbisOutputFileType.h"
#include "formats/wav/CWAVInputFileType.h"
#include "formats/wav/CWAVOutputFileType.h"
#include "formats/wma/CWMAInputFileType.h"
#include "formats/wma/CWMAOutputFileType.h"

namespace tbx {

// The input order decides which type gets a file whose extension two types
// list; the output order is the order of the format choices the user sees.
void registerInputFileTypes(CFileTypeRegistry& registry)
{
    registry.addInputFileType(fenn::make<CVorbisInputFileType>());
    registry.addInputFileType(fenn::make<CMP3InputFileType>());
    registry.addInputFileType(fenn::make<CWAVInputFileType>());
    registry.addInputFileType(fenn::make<CWMAInputFileType>());
    registry.addInputFileType(fenn::make<CFlacInputFileType>());
    // Last, so that it takes only what none of the five claims.
    registry.addInputFileType(fenn::make<CFFmpegInputFileType>());
}

void registerOutputFileTypes(CFileTypeRegistry& registry)
{
    registry.addOutputFileType(fenn::make<CMP3OutputFileType>());
    registry.addOutputFileType(fenn::make<CWMAOutputFileType>());
    registry.addOutputFileType(fenn::make<CVorbisOutputFileType>());
    registry.addOutputFileType(fenn::make<CWAVOutputFileType>());
    registry.addOutputFileType(fenn::make<CFlacOutputFileType>());
}

}  // namespace tbx
