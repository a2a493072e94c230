#include <gtest/gtest.h>

#include <string>

#include "formats/wma/CWMAFileAudioSource.h"
#include "formats/wma/CWMAFileTag.h"
#include "formats/wma/CWMAFileTagFactory.h"
#include "foundation/CURIError.h"
#include "tests/formats/wma/WMATestSupport.h"

using namespace tbtest::wma;

namespace {

class WMAFileTag : public WMATest
{
protected:
    // A second of a sweep, encoded by ffmpeg with tags of its own and an
    // attribute the tag does not know.
    std::filesystem::path taggedFile()
    {
        const auto wav = file("sweep.wav");
        const auto wma = file("tagged.wma");
        const CommandResult made = run(
            "sox -n -r 44100 -c 2 -b 16 " + quoted(wav) + " synth 1 sine 300-3000 vol 0.6 && ffmpeg -v error -y -i " +
            quoted(wav) + " -c:a wmav2 -b:a 96k -metadata title=Old -metadata artist=Someone " +
            "-metadata album=Record -metadata genre=Rock -metadata date=1987 -metadata track=2 " +
            "-metadata comment=Remark -metadata composer=Writer " + quoted(wma));
        EXPECT_EQ(made.status, 0) << made.output;
        return wma;
    }

    // The MD5 of each audio packet's data, in order, as ffprobe lists them.
    std::string packetHashes(const std::filesystem::path& path)
    {
        const CommandResult probed = run("ffprobe -v error -select_streams a -show_entries packet=data_hash "
                                         "-show_data_hash MD5 -of csv=p=0 " +
                                         quoted(path));
        EXPECT_EQ(probed.status, 0) << probed.output;
        return probed.output;
    }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_folder.path()), std::filesystem::directory_iterator()));
    }
};

std::vector<std::string> fields(const tbx::IMediaFileTag& tag)
{
    return {tag.getTitle().toStdString(),  tag.getArtist().toStdString(), tag.getAlbum().toStdString(),
            tag.getTrack().toStdString(),  tag.getYear().toStdString(),   tag.getGenre().toStdString(),
            tag.getComment().toStdString()};
}

TEST_F(WMAFileTag, ReadsFFmpegsAttributesAndAnswersByExtension)
{
    const auto path = taggedFile();
    tbx::CWMAFileTagFactory factory;
    const fenn::P<tbx::IMediaFileTag> tag = factory.createTag(uriOf(path));
    ASSERT_TRUE(tag);
    EXPECT_EQ(fields(*tag), (std::vector<std::string>{"Old", "Someone", "Record", "2", "1987", "Rock", "Remark"}));
    EXPECT_FALSE(tag->hasChanges());
    EXPECT_TRUE(tag->supportsAlbum() && tag->supportsTrack() && tag->supportsYear() && tag->supportsComment());

    std::filesystem::copy_file(path, file("LOUD.WMA"));
    EXPECT_TRUE(factory.createTag(uriOf(file("LOUD.WMA"))));
    EXPECT_FALSE(factory.createTag(uriOf(file("tagged.mp3"))));
    EXPECT_FALSE(factory.createTag(uriOf(file("wma"))));
    writeBytes(file("fake.wma"), "RIFF not an ASF file at all");
    EXPECT_THROW(factory.createTag(uriOf(file("fake.wma"))), fenn::CFileFormatNotSupportedError);
}

TEST_F(WMAFileTag, SavingRewritesTheAttributesAndKeepsThePackets)
{
    const auto path = taggedFile();
    const std::string packetsBefore = packetHashes(path);
    ASSERT_NE(packetsBefore.find("MD5:"), std::string::npos);
    const std::size_t filesBefore = filesInFolder();

    tbx::CWMAFileTag tag(uriOf(path));
    tag.saveChanges();  // nothing changed, nothing written
    tag.setTitle("Neuer Titel");
    tag.setArtist("Ärtist");
    tag.setAlbum("");
    tag.setTrack("5/12");
    tag.setYear("2011");
    tag.setGenre("Jazz");
    tag.setComment("Kommentar");
    EXPECT_TRUE(tag.hasChanges());
    tag.saveChanges();
    EXPECT_FALSE(tag.hasChanges());

    EXPECT_EQ(packetHashes(path), packetsBefore);
    EXPECT_EQ(filesInFolder(), filesBefore);
    const std::pair<const char*, const char*> expected[] = {
        {"title", "Neuer Titel"}, {"artist", "Ärtist"},     {"album", ""},
        {"track", "5/12"},        {"WM/Year", "2011"},      {"date", ""},
        {"genre", "Jazz"},        {"comment", "Kommentar"}, {"composer", "Writer"}};
    auto tags = probeTags(path);
    for (const auto& [name, value] : expected) EXPECT_EQ(tags[name], value) << name;
    // The encoder that made the audio stays named.
    EXPECT_EQ(tags["encoder"].rfind("Lavf", 0), 0u);

    tbx::CWMAFileTag reread(uriOf(path));
    EXPECT_EQ(fields(reread),
              (std::vector<std::string>{"Neuer Titel", "Ärtist", "", "5/12", "2011", "Jazz", "Kommentar"}));
    tbx::CWMAFileAudioSource source(uriOf(path));
    EXPECT_NEAR(static_cast<double>(decodeAll(source).frames()), 44100.0, 2048.0);
}

TEST_F(WMAFileTag, AFailedSaveLeavesTheFileAsItWas)
{
    const auto path = taggedFile();
    tbx::CWMAFileTag tag(uriOf(path));
    tag.setTitle("Never written");
    // The file changes behind the tag's back into something no demuxer takes.
    const std::string garbage(4096, 'x');
    writeBytes(path, garbage);
    const std::size_t filesBefore = filesInFolder();
    EXPECT_THROW(tag.saveChanges(), fenn::CException);
    EXPECT_TRUE(tag.hasChanges());
    EXPECT_EQ(readBytes(path), garbage);
    EXPECT_EQ(filesInFolder(), filesBefore);
}

}  // namespace
