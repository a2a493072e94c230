#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/cli/CCliSession.h"
#include "app/cli/CTerminalProgress.h"
#include "app/cli/CliCommands.h"
#include "audio/processing/CFileConverter.h"
#include "formats/CEncodeSettingsManager.h"
#include "formats/FormatTexts.h"
#include "foundation/CException.h"
#include "foundation/IStringLocalizer.h"

// "tonebench-cli convert": the conversion job of the convert wizard, with
// its settings from the command line and its progress on the terminal.
namespace tbx::cli {

namespace {

constexpr int kExitConverted = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
constexpr int kHelpWidth = 79;

// A wrong command line: the message, then exit status 2.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class SettingType { integer, boolean, decimal };

struct KnownSetting
{
    const char* key;
    SettingType type;
    const char* meaning;
};

// The encoder settings that the sinks read, with the type each reads.
const KnownSetting kKnownSettings[] = {
    {settingKeys::sampleRate, SettingType::integer, "sample rate in Hz (all formats)"},
    {settingKeys::channels, SettingType::integer, "1 or 2 (all formats)"},
    {settingKeys::bitsPerSample, SettingType::integer, "8 or 16 (WAV, FLAC)"},
    {settingKeys::bitRate, SettingType::integer, "bits per second (MP3)"},
    {settingKeys::vbr, SettingType::boolean, "variable bit rate (MP3)"},
    {settingKeys::qualityIndex, SettingType::integer, "quality 0 to 10 (Ogg Vorbis)"},
    {settingKeys::avgBitRate, SettingType::integer, "average bits per second (Ogg Vorbis)"},
    {settingKeys::minBitRate, SettingType::integer, "lowest bits per second (Ogg Vorbis)"},
    {settingKeys::maxBitRate, SettingType::integer, "highest bits per second (Ogg Vorbis)"},
    {settingKeys::vbrEnabled, SettingType::boolean, "variable bit rate (WMA)"},
    {settingKeys::vbrQuality, SettingType::decimal, "quality 0.0 to 1.0 of variable bit rate (WMA)"},
    {settingKeys::cbrBitRate, SettingType::integer, "bits per second of constant bit rate (WMA)"},
};

struct ConvertOptions
{
    bool help = false;
    std::string format;
    // -1 until given.
    std::int32_t quality = -1;
    std::vector<std::pair<std::string, std::string>> settings;
    std::string destination;
    bool nextToSource = false;
    std::int32_t existsPolicy = existingFilePolicy::rename;
    std::vector<std::string> files;
};

// The value of an option given as "--name value" or "--name=value".
std::string optionValue(const std::string& argument, const std::string& name, int& index, int argc, char** argv)
{
    if (argument.size() > name.size()) return argument.substr(name.size() + 1);
    if (index + 1 >= argc) throw UsageError("option '" + name + "' needs a value");
    return argv[++index];
}

bool isOption(const std::string& argument, const std::string& name)
{
    return argument == name || argument.rfind(name + "=", 0) == 0;
}

ConvertOptions parseArguments(int argc, char** argv)
{
    ConvertOptions options;
    bool onlyFiles = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (onlyFiles || argument.empty() || argument[0] != '-' || argument == "-") {
            options.files.push_back(argument);
        } else if (argument == "--") {
            onlyFiles = true;
        } else if (argument == "-h" || argument == "--help") {
            options.help = true;
        } else if (isOption(argument, "--to")) {
            options.format = optionValue(argument, "--to", i, argc, argv);
        } else if (isOption(argument, "--quality")) {
            const std::string value = optionValue(argument, "--quality", i, argc, argv);
            if (value.size() != 1 || value[0] < '0' || value[0] > '5')
                throw UsageError("the quality must be a number from 0 to 5, not '" + value + "'");
            options.quality = value[0] - '0';
        } else if (isOption(argument, "--set")) {
            const std::string value = optionValue(argument, "--set", i, argc, argv);
            const std::size_t equals = value.find('=');
            if (equals == std::string::npos || equals == 0)
                throw UsageError("a setting is given as KEY=VALUE, not '" + value + "'");
            options.settings.emplace_back(value.substr(0, equals), value.substr(equals + 1));
        } else if (isOption(argument, "--dest")) {
            options.destination = optionValue(argument, "--dest", i, argc, argv);
            if (options.destination.empty()) throw UsageError("the destination folder is empty");
        } else if (argument == "--next-to-source") {
            options.nextToSource = true;
        } else if (isOption(argument, "--exists")) {
            const std::string value = optionValue(argument, "--exists", i, argc, argv);
            if (value == "rename") {
                options.existsPolicy = existingFilePolicy::rename;
            } else if (value == "trash") {
                options.existsPolicy = existingFilePolicy::moveToTrash;
            } else if (value == "overwrite") {
                options.existsPolicy = existingFilePolicy::overwrite;
            } else {
                throw UsageError("'--exists' takes rename, trash or overwrite, not '" + value + "'");
            }
        } else {
            throw UsageError("unknown option '" + argument + "'");
        }
    }
    if (options.help) return options;
    if (!options.destination.empty() && options.nextToSource)
        throw UsageError("'--dest' and '--next-to-source' exclude each other");
    if (!options.settings.empty() && options.quality != -1 && options.quality != qualitySelector::custom)
        throw UsageError("'--set' gives custom settings, which need quality 5");
    if (options.files.empty()) throw UsageError("no input files");
    return options;
}

// The custom settings, each boxed as its sink reads it.
fenn::P<fenn::CValueList> makeCustomSettings(const ConvertOptions& options)
{
    auto settings = fenn::make<fenn::CValueList>();
    for (const auto& [key, value] : options.settings) {
        const KnownSetting* known = nullptr;
        for (const KnownSetting& setting : kKnownSettings)
            if (key == setting.key) known = &setting;
        if (known == nullptr) throw UsageError("unknown setting '" + key + "' (see --help)");
        const fenn::String name = fenn::String::copyOf(key);
        const char* begin = value.data();
        const char* end = value.data() + value.size();
        switch (known->type) {
        case SettingType::integer: {
            std::int32_t number = 0;
            const auto [rest, error] = std::from_chars(begin, end, number);
            if (error != std::errc() || rest != end || value.empty())
                throw UsageError("setting '" + key + "' takes a whole number, not '" + value + "'");
            settings->setInt(name, number);
            break;
        }
        case SettingType::decimal: {
            char* rest = nullptr;
            const double number = std::strtod(value.c_str(), &rest);
            if (value.empty() || rest != value.c_str() + value.size())
                throw UsageError("setting '" + key + "' takes a number, not '" + value + "'");
            settings->setDouble(name, number);
            break;
        }
        case SettingType::boolean:
            if (value == "true" || value == "yes" || value == "1") {
                settings->setBool(name, true);
            } else if (value == "false" || value == "no" || value == "0") {
                settings->setBool(name, false);
            } else {
                throw UsageError("setting '" + key + "' takes true or false, not '" + value + "'");
            }
            break;
        }
    }
    return settings;
}

// The output type named by its id, extension (with or without the dot) or
// name, in any case.
fenn::P<IOutputFileType> findOutputType(const CFileTypeRegistry& fileTypes, const std::string& format)
{
    const fenn::String name = fenn::String::copyOf(format);
    const fenn::String extension = format.rfind('.', 0) == 0 ? name : fenn::String(".") + name;
    for (const fenn::P<IOutputFileType>& type : fileTypes.getOutputFileTypes()) {
        if (type->getId().equalsNoCase(name) || type->getExtension().equalsNoCase(extension) ||
            type->getName().equalsNoCase(name))
            return type;
    }
    return nullptr;
}

std::string knownFormats(const CFileTypeRegistry& fileTypes)
{
    std::string list;
    for (const fenn::P<IOutputFileType>& type : fileTypes.getOutputFileTypes()) {
        if (!list.empty()) list += ", ";
        list += type->getExtension().toStdString().substr(1) + " (" + type->getId().toStdString() + ")";
    }
    return list.empty() ? "none" : list;
}

// Prints text from column indent on, broken at blanks before kHelpWidth;
// the first line continues where the cursor is.
void printWrapped(std::FILE* out, const std::string& text, int indent, int column)
{
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t room = static_cast<std::size_t>(kHelpWidth - column);
        std::size_t end = text.size();
        if (end - start > room) {
            end = text.rfind(' ', start + room);
            if (end == std::string::npos || end <= start) end = text.find(' ', start + room);
            if (end == std::string::npos) end = text.size();
        }
        std::fprintf(out, "%s\n", text.substr(start, end - start).c_str());
        start = end < text.size() ? end + 1 : end;
        if (start < text.size()) std::fprintf(out, "%*s", indent, "");
        column = indent;
    }
}

void printOption(std::FILE* out, const char* option, const std::string& text)
{
    std::fprintf(out, "  %-20s", option);
    printWrapped(out, text, 22, 22);
}

void printHelp(std::FILE* out, const CFileTypeRegistry& fileTypes)
{
    std::fprintf(out, "Usage: tonebench-cli convert [OPTIONS] FILE...\n\n");
    printWrapped(out,
                 "Converts audio files to another format or quality. Each file is written to a new \".tmp\" file "
                 "in its target folder, which takes the target's place only when the whole file is done: a file "
                 "that fails leaves every existing file as it was, and the others go on.",
                 0, 0);
    std::fprintf(out, "\nOptions:\n");
    printOption(out, "--to FORMAT",
                "the output format, by its extension or id in any case: " + knownFormats(fileTypes) +
                    ". Without it each file keeps its own format.");
    printOption(out, "--quality N", "the quality, from 0 to 5 (default 0):");
    for (std::int32_t selector = 0; selector <= qualitySelector::custom; ++selector) {
        std::fprintf(out, "%24s%d  ", "", selector);
        printWrapped(out,
                     fenn::localize(formatTexts::qualityNames[selector]).toStdString() + ": " +
                         fenn::localize(formatTexts::qualityDescriptions[selector]).toStdString(),
                     27, 27);
    }
    printOption(out, "--set KEY=VALUE",
                "a custom encoder setting, as many as needed; implies quality 5. Settings that a format does "
                "not read are passed over, and a format falls back to its own defaults for the rest. KEY is one "
                "of:");
    for (const KnownSetting& setting : kKnownSettings) {
        std::fprintf(out, "%24s%-14s", "", setting.key);
        printWrapped(out, setting.meaning, 38, 38);
    }
    printOption(out, "--dest DIR", "writes the output files into DIR, which is made if it is missing.");
    printOption(out, "--next-to-source",
                "writes each output file into the folder of its input file. This is the default.");
    printOption(out, "--exists POLICY", "what happens to a file that is already where an output file goes:");
    std::fprintf(out, "%24s%-11s", "", "rename");
    printWrapped(out,
                 "(default) it is renamed to NAME-old.EXT, or NAME-old2.EXT and so on up to NAME-old9999.EXT when "
                 "that exists. An input file whose output takes its own place is kept this way too.",
                 35, 35);
    std::fprintf(out, "%24s%-11s", "", "trash");
    printWrapped(out,
                 "it is moved to the desktop's trash, from where it can be restored. Where the volume has no "
                 "trash the file fails and the existing file stays.",
                 35, 35);
    std::fprintf(out, "%24s%-11s", "", "overwrite");
    printWrapped(out, "it is replaced.", 35, 35);
    printOption(out, "-h, --help", "prints this text.");
    std::fprintf(out, "\n");
    printWrapped(out,
                 "Progress goes to the standard error: two bars on a terminal, one line for each file otherwise. "
                 "The files that failed are listed at the end, with the reason. Ctrl-C stops the conversion: "
                 "the file at work is left out, with its target untouched, and no further file is started; a "
                 "second Ctrl-C ends the program at once.",
                 0, 0);
    std::fprintf(out, "\n");
    printWrapped(out,
                 "Exit status: 0 when every file was converted, 1 when any file failed or the conversion was "
                 "stopped, 2 for a wrong command line.",
                 0, 0);
}

// The job that Ctrl-C stops; Abort only sets a flag, which a signal
// handler may do.
std::atomic<CFileConverter*> g_interruptible{nullptr};

extern "C" void onInterrupt(int)
{
    if (CFileConverter* job = g_interruptible.load()) job->Abort();
}

// Lets Ctrl-C stop the job for as long as it lives; a second Ctrl-C ends
// the process as usual.
class InterruptScope
{
public:
    explicit InterruptScope(CFileConverter& job)
    {
        g_interruptible.store(&job);
        struct sigaction action
        {
        };
        action.sa_handler = onInterrupt;
        action.sa_flags = SA_RESETHAND;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGINT, &action, &m_previous);
    }
    ~InterruptScope()
    {
        ::sigaction(SIGINT, &m_previous, nullptr);
        g_interruptible.store(nullptr);
    }
    InterruptScope(const InterruptScope&) = delete;
    InterruptScope& operator=(const InterruptScope&) = delete;

private:
    struct sigaction m_previous
    {
    };
};

fenn::CURI uriForPath(const std::string& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(std::filesystem::absolute(path).lexically_normal().string()));
}

int convert(const ConvertOptions& options, const CCliSession& session)
{
    const CFileTypeRegistry& fileTypes = session.getFileTypes();
    fenn::P<IOutputFileType> outputType;
    if (!options.format.empty()) {
        outputType = findOutputType(fileTypes, options.format);
        if (!outputType)
            throw UsageError("unknown format '" + options.format + "'; known formats: " + knownFormats(fileTypes));
    }
    const fenn::P<fenn::CValueList> customSettings = makeCustomSettings(options);
    const std::int32_t quality = options.quality >= 0
                                     ? options.quality
                                     : (options.settings.empty() ? qualitySelector::keep : qualitySelector::custom);

    const auto converter = fenn::make<CFileConverter>(fileTypes);
    for (const std::string& file : options.files) converter->AddInputFile(uriForPath(file), fenn::String::copyOf(file));
    converter->SetOutputFileType(outputType);
    converter->SetFormat(quality, *customSettings);
    CFileDestination destination;
    if (!options.destination.empty()) {
        destination.setMode(destinationMode::folder);
        destination.setFolder(uriForPath(options.destination));
    }
    converter->SetDestination(destination, options.existsPolicy);

    const auto progress =
        fenn::make<CTerminalProgress>(stderr, ::isatty(STDERR_FILENO) ? ProgressDisplay::bars : ProgressDisplay::lines,
                                      converter->GetInputFileCount());
    converter->addProgressListener(progress.get());
    {
        InterruptScope interrupt(*converter);
        converter->Run();
    }
    converter->removeProgressListener(progress.get());
    progress->finish();

    const std::string log = converter->GetLog().toStdString();
    if (!log.empty()) std::fprintf(stderr, "%s", log.c_str());
    const std::int32_t converted = converter->GetCompletedItemCount();
    const std::int32_t count = converter->GetInputFileCount();
    std::printf("Converted %d of %d file%s.\n", converted, count, count == 1 ? "" : "s");
    return converted == count && log.empty() ? kExitConverted : kExitFailed;
}

}  // namespace

int runConvertCommand(int argc, char** argv)
{
    try {
        const ConvertOptions options = parseArguments(argc, argv);
        const CCliSession session;
        if (options.help) {
            printHelp(stdout, session.getFileTypes());
            return kExitConverted;
        }
        return convert(options, session);
    } catch (const UsageError& error) {
        std::fprintf(stderr, "tonebench-cli convert: %s\nTry 'tonebench-cli convert --help'.\n", error.what());
        return kExitUsage;
    } catch (const fenn::CException& error) {
        std::fprintf(stderr, "tonebench-cli convert: %s\n", error.getDescription().toStdString().c_str());
        return kExitFailed;
    }
}

}  // namespace tbx::cli
