#include "formats/ffmpeg/FFmpegLibrary.h"

#include <dlfcn.h>

#include <mutex>
#include <string>

#include "formats/ffmpeg/FFmpegTexts.h"
#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

#define TB_STRINGIFY_VALUE(value) #value
#define TB_SONAME(library, major) "lib" #library ".so." TB_STRINGIFY_VALUE(major)

// The shared objects by their versioned names: the development links
// ("libavcodec.so") need not be installed where the program runs.
constexpr const char* kAVCodec = TB_SONAME(avcodec, LIBAVCODEC_VERSION_MAJOR);
constexpr const char* kAVFormat = TB_SONAME(avformat, LIBAVFORMAT_VERSION_MAJOR);
constexpr const char* kAVUtil = TB_SONAME(avutil, LIBAVUTIL_VERSION_MAJOR);

[[noreturn]] void throwMissing(const std::string& name)
{
    throw fenn::CError(fenn::String(),
                       fenn::localize(ffmpegTexts::libraryMissing).replace("%NAME%", fenn::String::copyOf(name)));
}

void* open(const char* soname)
{
    void* handle = dlopen(soname, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) throwMissing(soname);
    return handle;
}

struct Loaded
{
    FFmpegLibrary functions;
    std::string failure;
};

Loaded load()
{
    Loaded loaded;
    try {
        void* avutil = open(kAVUtil);
        void* avcodec = open(kAVCodec);
        void* avformat = open(kAVFormat);
#define TB_FFMPEG_FUNCTION(library, name)                                                                              \
    loaded.functions.name = reinterpret_cast<decltype(&::name)>(dlsym(library, #name));                                \
    if (loaded.functions.name == nullptr) throwMissing(std::string(k##library##Name) + ": " #name);
        constexpr const char* kavutilName = kAVUtil;
        constexpr const char* kavcodecName = kAVCodec;
        constexpr const char* kavformatName = kAVFormat;
#include "formats/ffmpeg/FFmpegFunctions.inc"
#undef TB_FFMPEG_FUNCTION
    } catch (const fenn::CError& error) {
        loaded.failure = error.getDescription().toStdString();
    }
    return loaded;
}

}  // namespace

const FFmpegLibrary& ffmpeg()
{
    static const Loaded loaded = load();
    if (!loaded.failure.empty()) throw fenn::CError(fenn::String(), fenn::String::copyOf(loaded.failure));
    return loaded.functions;
}

}  // namespace tbx
