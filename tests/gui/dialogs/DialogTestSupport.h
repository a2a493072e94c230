#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "foundation/CFileSystemManager.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CFileSystem.h"
#include "foundation/posix/CPackage.h"
#include "foundation/posix/CSystem.h"
#include "tests/support/TempFolder.h"
#include "tests/support/gui/LaterAction.h"

namespace dialogstest {

using fenn::make;
using fenn::P;

// The platform's event loop and the disk's file system, installed for the
// test, and a folder tree to look at:
//   Albums/inner.wav, beta/, .hidden/, .secret.wav, a.WAV, b.mp3, c.txt,
//   Song.wav (10 bytes), song.wav, Zebra.flac (3 bytes)
class DialogTest : public ::testing::Test
{
protected:
    DialogTest()
    {
        fenn::setSystem(m_system);
        fenn::CFileSystemManager::getInstance()->addFileSystem(m_files);
        std::filesystem::create_directory(m_folder / "Albums");
        std::filesystem::create_directory(m_folder / "beta");
        std::filesystem::create_directory(m_folder / ".hidden");
        write("Albums/inner.wav", "RIFF");
        write(".secret.wav", "x");
        write("a.WAV", "12345");
        write("b.mp3", "1234567");
        write("c.txt", "notes");
        write("Song.wav", "0123456789");
        write("song.wav", "0");
        write("Zebra.flac", "abc");
    }
    ~DialogTest() override
    {
        fenn::CFileSystemManager::getInstance()->removeFileSystem(m_files.get());
        fenn::setSystem(nullptr);
        m_system->discardPending();
    }

    void write(const std::string& name, const std::string& bytes)
    {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
    }
    fenn::CURI uriOf(const std::string& name) const
    {
        const std::filesystem::path path = name.empty() ? m_folder.path() : m_folder / name;
        return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
    }
    void later(std::function<void()> work) { m_system->postAction(make<tbtest::LaterAction>(std::move(work))); }

    fenn::posix::CPlatformSession m_platform;
    P<fenn::posix::CSystem> m_system = make<fenn::posix::CSystem>();
    P<fenn::posix::CFileSystem> m_files = make<fenn::posix::CFileSystem>();
    tbtest::TempFolder m_folder;
};

}  // namespace dialogstest
