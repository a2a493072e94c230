#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "foundation/CFileSystemManager.h"
#include "foundation/CURIError.h"
#include "tests/processing/JobTest.h"
#include "tests/processing/TrashSandbox.h"

using namespace tbtest;
namespace fs = std::filesystem;

namespace {

using TrashTest = JobTest;

std::string readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

TEST_F(TrashTest, AFileGoesToTheTrashWithItsInfo)
{
    trashSandbox();
    const fs::path file = folder / "to-trash.txt";
    std::ofstream(file) << "content";
    fenn::CFileSystemManager::getInstance()->moveToTrash(uriOf(file));
    EXPECT_FALSE(fs::exists(file));

    const fs::path trashed = findInTrash(file);
    ASSERT_FALSE(trashed.empty()) << "no .trashinfo names " << file;
    EXPECT_EQ(readFile(trashed), "content");
    const std::string info = readFile(trashSandbox().trash / "info" / (trashed.filename().string() + ".trashinfo"));
    EXPECT_EQ(info.rfind("[Trash Info]\n", 0), 0u) << info;
    EXPECT_NE(info.find("\nDeletionDate="), std::string::npos) << info;

    EXPECT_THROW(fenn::CFileSystemManager::getInstance()->moveToTrash(uriOf(folder / "missing.txt")),
                 fenn::CFileNotFoundError);
}

TEST_F(TrashTest, WithoutATrashTheFileStaysAndTheErrorSaysSo)
{
    trashSandbox();
    // A plain file where the trash folder belongs: GIO can make no trash.
    const fs::path trash = trashSandbox().trash;
    const fs::path away = trash.parent_path() / "Trash.away";
    if (fs::exists(trash)) fs::rename(trash, away);
    std::ofstream(trash) << "in the way";

    const fs::path file = folder / "stays.txt";
    std::ofstream(file) << "content";
    try {
        fenn::CFileSystemManager::getInstance()->moveToTrash(uriOf(file));
        ADD_FAILURE() << "moved without a trash";
    } catch (const fenn::CFileError& error) {
        EXPECT_NE(
            error.getDescription().toStdString().find("Cannot move '" + uriOf(file).toStdString() + "' to the trash: "),
            std::string::npos)
            << error.getDescription().toStdString();
    }
    EXPECT_EQ(readFile(file), "content");

    fs::remove(trash);
    if (fs::exists(away)) fs::rename(away, trash);
}

TEST_F(TrashTest, TheTrashPolicyMovesTheExistingTargetToTheTrash)
{
    trashSandbox();
    const TestAudio audio = makeRamp(44100, 2, 500, 4);
    fs::create_directories(folder / "out");
    writeTestAudio(folder / "song.taud", audio);
    std::ofstream(folder / "out" / "song.taud") << "the user's file";

    const auto converter = makeConverter({folder / "song.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")),
                              tbx::existingFilePolicy::moveToTrash);
    converter->Run();
    EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
    EXPECT_EQ(namesIn(folder / "out"), std::vector<std::string>{"song.taud"});
    EXPECT_EQ(readTestAudio(folder / "out" / "song.taud").samples, audio.samples);
    const fs::path trashed = findInTrash(folder / "out" / "song.taud");
    ASSERT_FALSE(trashed.empty());
    EXPECT_EQ(readFile(trashed), "the user's file");
}

}  // namespace
