#include <gtest/gtest.h>

#include <random>

#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/wav/WAVTestSupport.h"

namespace {

using namespace wavtest;

// Damaged files made from small real files of each codec. Every one must
// end in the source's own errors, never in another error or a crash (the
// sanitizer build runs this too).
class WAVHostileInput : public DiskStreams
{
protected:
    Bytes make(const std::string& command)
    {
        const auto file = m_folder / "seed.wav";
        std::filesystem::remove(file);
        std::string line = command;
        line.replace(line.find("{in}"), 4, quoted(m_folder / "signal.wav"));
        line.replace(line.find("{out}"), 5, quoted(file));
        EXPECT_EQ(run(line), 0) << line;
        return readFile(file);
    }

    // Opens and reads the file to its end; false with a message when it
    // fails in another way than "not supported" or "corrupted".
    ::testing::AssertionResult survives(const Bytes& file)
    {
        m_memoryFiles->put("hostile.wav", file.data(), file.size());
        try {
            auto source = fenn::make<tbx::CWAVFileAudioSource>(fenn::CURI("mem:hostile.wav"));
            source->GetInfo();
            source->Open(8, nullptr);
            readAll(*source, 4096);
            source->Close();
        } catch (const fenn::CFileFormatNotSupportedError&) {
        } catch (const fenn::CError& error) {
            if (error.getDescription() != fenn::String("The file is corrupted."))
                return ::testing::AssertionFailure() << "unexpected error: " << error.what();
        }
        return ::testing::AssertionSuccess();
    }
};

TEST_F(WAVHostileInput, DamagedFilesEndInTheSourcesErrors)
{
    ASSERT_EQ(run("sox -n -r 11025 -c 2 -b 16 " + quoted(m_folder / "signal.wav") + " synth 0.05 sine 500 sine 700"),
              0);
    const std::vector<Bytes> seeds = {
        make("sox {in} {out}"),
        make("sox {in} -b 8 -c 1 {out}"),
        make("sox {in} -e ima-adpcm {out}"),
        make("sox {in} -e ms-adpcm {out}"),
        make("sox {in} -r 8000 -c 1 -e gsm-full-rate {out}"),
        make("sox {in} -e a-law {out}"),
        make("sox {in} -e floating-point -b 32 {out}"),
        make("sox {in} -b 24 {out}"),
        make("ffmpeg -nostdin -loglevel quiet -i {in} -c:a libmp3lame -b:a 32k {out}"),
    };
    std::mt19937 random(20240601);
    int cases = 0;
    auto check = [&](const Bytes& file, const std::string& what) {
        ++cases;
        EXPECT_TRUE(survives(file)) << what;
    };

    for (std::size_t seedIndex = 0; seedIndex < seeds.size(); ++seedIndex) {
        const Bytes& seed = seeds[seedIndex];
        SCOPED_TRACE("seed " + std::to_string(seedIndex));
        ASSERT_GT(seed.size(), 100u);
        const std::size_t fmt = findChunk(seed, "fmt ");
        const std::size_t data = findChunk(seed, "data");
        ASSERT_NE(fmt, std::string::npos);
        ASSERT_NE(data, std::string::npos);
        m_memoryFiles->put("seed.wav", seed.data(), seed.size());
        auto source = fenn::make<tbx::CWAVFileAudioSource>(fenn::CURI("mem:seed.wav"));
        source->Open(8, nullptr);
        ASSERT_GE(readAll(*source).frames(), 400) << "the undamaged seed reads";

        // Truncated anywhere in the header and at a few places in the data.
        for (std::size_t size = 0; size < data + 16 && size < seed.size(); ++size) {
            check(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(size)), "cut");
        }
        check(Bytes(seed.begin(), seed.end() - 1), "cut by one");

        // Fields of the format record and the chunk sizes, set to values out of range.
        struct Field
        {
            std::size_t at;
            int bytes;
        };
        const Field fields[] = {{fmt + 4, 4},  {fmt + 8, 2},  {fmt + 10, 2}, {fmt + 12, 4}, {fmt + 16, 4},
                                {fmt + 20, 2}, {fmt + 22, 2}, {fmt + 24, 2}, {data + 4, 4}, {4, 4}};
        const std::uint32_t values[] = {0, 1, 2, 3, 7, 15, 16, 17, 64, 1985, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF};
        for (const Field& field : fields) {
            if (field.at + field.bytes > seed.size()) continue;
            for (std::uint32_t value : values) {
                Bytes file = seed;
                if (field.bytes == 4)
                    putLE32(file, field.at, value);
                else
                    putLE16(file, field.at, static_cast<std::uint16_t>(value));
                check(file, "field at " + std::to_string(field.at) + " = " + std::to_string(value));
            }
        }
        // Every format tag the decoder knows, on every seed's record.
        for (std::uint16_t tag : {1, 2, 3, 6, 7, 0x11, 0x31, 0x50, 0x55, 0xFFFE, 0x1234}) {
            Bytes file = seed;
            putLE16(file, fmt + 8, tag);
            check(file, "tag " + std::to_string(tag));
        }
        // A LIST INFO with sizes out of range, before and behind the data.
        const Bytes list = infoList("LIST", {{"INAM", "Title"}, {"IART", "Artist"}});
        for (std::uint32_t listSize : {0u, 3u, 4u, 5u, 12u, 13u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
            for (std::uint32_t itemSize : {0u, 1u, 9u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
                Bytes broken = list;
                putLE32(broken, 4, listSize);
                putLE32(broken, 16, itemSize);
                Bytes before(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(data));
                before.insert(before.end(), broken.begin(), broken.end());
                before.insert(before.end(), seed.begin() + static_cast<std::ptrdiff_t>(data), seed.end());
                check(before, "list before data");
                Bytes behind = seed;
                behind.insert(behind.end(), broken.begin(), broken.end());
                check(behind, "list behind data");
            }
        }
        // Odd chunk sizes in front of the format chunk.
        for (std::uint32_t size : {1u, 3u, 5u}) {
            Bytes file(seed.begin(), seed.begin() + 12);
            const Bytes odd = chunk("junk", Bytes(size, 0x55));
            file.insert(file.end(), odd.begin(), odd.end());
            file.push_back(0);
            file.insert(file.end(), seed.begin() + 12, seed.end());
            check(file, "odd chunk");
        }
        // Random bytes in the first 128 bytes.
        for (int round = 0; round < 60; ++round) {
            Bytes file = seed;
            const int changes = 1 + static_cast<int>(random() % 8);
            for (int change = 0; change < changes; ++change) {
                file[random() % std::min<std::size_t>(128, file.size())] = static_cast<std::uint8_t>(random());
            }
            check(file, "random change " + std::to_string(round));
        }
    }
    // Random files, half of them with a valid RIFF WAVE start.
    for (int round = 0; round < 40; ++round) {
        Bytes file(random() % 600);
        for (std::uint8_t& byte : file) byte = static_cast<std::uint8_t>(random());
        if (round % 2 == 0 && file.size() >= 16) {
            const char start[] = "RIFF\0\0\0\0WAVEfmt ";
            for (std::size_t index = 0; index < 16; ++index) file[index] = static_cast<std::uint8_t>(start[index]);
        }
        check(file, "random file " + std::to_string(round));
    }
    EXPECT_GT(cases, 3000);
}

}  // namespace
