#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "app/cli/CCliSession.h"
#include "app/cli/CliCommands.h"
#include "foundation/CException.h"

// "tonebench-cli tag": shows the seven fields of each file's tag, or changes
// them through the same tag classes as the program's tag editing.
namespace tbx::cli {

namespace {

const char* const kUsage = "Usage: tonebench-cli tag [--set FIELD=VALUE]... FILE...\n"
                           "\n"
                           "Shows the tags of audio files, or changes them.\n"
                           "\n"
                           "Without --set, prints each file's name and then its fields, one per line:\n"
                           "title, artist, album, track, year, genre and comment. Fields that the\n"
                           "file's format cannot hold are left out.\n"
                           "\n"
                           "Options:\n"
                           "  --set FIELD=VALUE  give FIELD the value VALUE in every FILE, and save;\n"
                           "                     repeat it for more fields. An empty VALUE empties the\n"
                           "                     field. A genre is a name of the genre list (\"Rock\",\n"
                           "                     \"Hip Hop\"); in MP3 files a name the list does not\n"
                           "                     know leaves the file without genre.\n"
                           "  --help             print this text\n"
                           "  --                 take the rest of the arguments as files\n"
                           "\n"
                           "Files are told apart by their extension; the formats with tags are the\n"
                           "ones of the program (MP3 and the others as they are added).\n"
                           "\n"
                           "Exit status: 0 when every file worked, 1 when some file failed (each\n"
                           "failure is reported with the file's name), 2 for a wrong command line.\n";

// The fields of IMediaFileTag by their names on the command line.
struct Field
{
    const char* name;
    fenn::String (IMediaFileTag::*get)() const;
    void (IMediaFileTag::*set)(const fenn::String&);
    bool (IMediaFileTag::*supports)() const;
};

const Field kFields[] = {
    {"title", &IMediaFileTag::getTitle, &IMediaFileTag::setTitle, &IMediaFileTag::supportsTitle},
    {"artist", &IMediaFileTag::getArtist, &IMediaFileTag::setArtist, &IMediaFileTag::supportsArtist},
    {"album", &IMediaFileTag::getAlbum, &IMediaFileTag::setAlbum, &IMediaFileTag::supportsAlbum},
    {"track", &IMediaFileTag::getTrack, &IMediaFileTag::setTrack, &IMediaFileTag::supportsTrack},
    {"year", &IMediaFileTag::getYear, &IMediaFileTag::setYear, &IMediaFileTag::supportsYear},
    {"genre", &IMediaFileTag::getGenre, &IMediaFileTag::setGenre, &IMediaFileTag::supportsGenre},
    {"comment", &IMediaFileTag::getComment, &IMediaFileTag::setComment, &IMediaFileTag::supportsComment},
};

const Field* findField(const std::string& name)
{
    for (const Field& field : kFields) {
        if (name == field.name) return &field;
    }
    return nullptr;
}

struct Assignment
{
    const Field* field;
    fenn::String value;
};

struct CommandLine
{
    bool help = false;
    std::vector<Assignment> assignments;
    std::vector<std::string> files;
};

int usageError(const std::string& message)
{
    std::fprintf(stderr, "tonebench-cli tag: %s\nTry 'tonebench-cli tag --help'.\n", message.c_str());
    return 2;
}

// Fills the command line; returns 0, or the exit status of a wrong one.
int parseCommandLine(int argc, char** argv, CommandLine& commandLine)
{
    bool onlyFiles = false;
    for (int index = 1; index < argc; ++index) {
        const std::string argument = argv[index];
        if (onlyFiles || argument.empty() || argument[0] != '-' || argument == "-") {
            commandLine.files.push_back(argument);
        } else if (argument == "--") {
            onlyFiles = true;
        } else if (argument == "--help" || argument == "-h") {
            commandLine.help = true;
        } else if (argument == "--set" || argument.rfind("--set=", 0) == 0) {
            std::string assignment;
            if (argument == "--set") {
                if (index + 1 == argc) return usageError("--set needs FIELD=VALUE");
                assignment = argv[++index];
            } else {
                assignment = argument.substr(6);
            }
            const std::size_t equals = assignment.find('=');
            if (equals == std::string::npos) return usageError("'" + assignment + "' is not FIELD=VALUE");
            const Field* field = findField(assignment.substr(0, equals));
            if (field == nullptr) {
                return usageError("unknown field '" + assignment.substr(0, equals) +
                                  "' (title, artist, album, track, year, genre, comment)");
            }
            commandLine.assignments.push_back({field, fenn::String::copyOf(assignment.substr(equals + 1))});
        } else {
            return usageError("unknown option '" + argument + "'");
        }
    }
    if (!commandLine.help && commandLine.files.empty()) return usageError("no files given");
    return 0;
}

void reportFailure(const std::string& file, const std::string& message)
{
    std::fprintf(stderr, "tonebench-cli tag: '%s': %s\n", file.c_str(), message.c_str());
}

void printTag(const std::string& file, const IMediaFileTag& tag)
{
    std::printf("%s\n", file.c_str());
    for (const Field& field : kFields) {
        if (!(tag.*field.supports)()) continue;
        const std::string value = (tag.*field.get)().toStdString();
        std::printf("  %s:%s%s\n", field.name, value.empty() ? "" : " ", value.c_str());
    }
}

// Shows or changes one file's tag; false when it failed (reported).
bool processFile(const CCliSession& session, const CommandLine& commandLine, const std::string& file)
{
    try {
        const fenn::CURI uri = fenn::CURI::fromPath(fenn::String::copyOf(std::filesystem::absolute(file).string()));
        const fenn::P<IMediaFileTag> tag = session.getTagFactories().getMediaFileTag(uri);
        if (!tag) {
            reportFailure(file, "no tag format of the program knows this kind of file");
            return false;
        }
        if (commandLine.assignments.empty()) {
            printTag(file, *tag);
            return true;
        }
        for (const Assignment& assignment : commandLine.assignments) {
            if (!(*tag.*assignment.field->supports)()) {
                reportFailure(file, std::string("this kind of file has no ") + assignment.field->name + " field");
                return false;
            }
        }
        for (const Assignment& assignment : commandLine.assignments) (*tag.*assignment.field->set)(assignment.value);
        tag->saveChanges();
        return true;
    } catch (const fenn::CException& error) {
        reportFailure(file, error.getDescription().toStdString());
    } catch (const std::exception& error) {
        reportFailure(file, error.what());
    }
    return false;
}

}  // namespace

int runTagCommand(int argc, char** argv)
{
    CommandLine commandLine;
    if (const int status = parseCommandLine(argc, argv, commandLine); status != 0) return status;
    if (commandLine.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const CCliSession session;
    bool allWorked = true;
    for (std::size_t index = 0; index < commandLine.files.size(); ++index) {
        if (index > 0 && commandLine.assignments.empty()) std::printf("\n");
        allWorked = processFile(session, commandLine, commandLine.files[index]) && allWorked;
    }
    return allWorked ? 0 : 1;
}

}  // namespace tbx::cli
