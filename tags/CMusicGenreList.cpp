#include "tags/CMusicGenreList.h"

#include <iterator>

#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"
#include "tags/TagTexts.h"

namespace tbx {

namespace {

// What the texts do not say of a genre: its number in the published ID3v1
// table, and its aliases (null: the untranslated name is the only alias).
// One row per entry of texts::musicGenres, in the same order.
struct GenreRow
{
    std::int32_t number;
    const char* aliases;
};

constexpr GenreRow kGenreRows[] = {
    {17, nullptr},                                                         // Rock
    {79, "Hard Rock,Hard-Rock,HardRock"},                                  // Hard Rock
    {121, "Punk Rock,PunkRock,Punk-Rock"},                                 // Punk Rock
    {78, "Rock & Roll,Rock&Roll,Rock'n'Roll,RocknRoll,Rock and Roll"},     // Rock & Roll
    {13, nullptr},                                                         // Pop
    {42, nullptr},                                                         // Soul
    {43, nullptr},                                                         // Punk
    {15, nullptr},                                                         // Rap
    {7, "Hip-Hop,Hip Hop,HipHop"},                                         // Hip-Hop
    {135, nullptr},                                                        // Beat
    {3, nullptr},                                                          // Dance
    {18, nullptr},                                                         // Techno
    {31, nullptr},                                                         // Trance
    {35, nullptr},                                                         // House
    {68, nullptr},                                                         // Rave
    {112, nullptr},                                                        // Club
    {14, "R&B,R & B,R and B"},                                             // R&B
    {127, "Drum & Bass,Drum and Bass,Drum 'n' Bass,Drum'n'Bass"},          // Drum & Bass
    {4, nullptr},                                                          // Disco
    {5, nullptr},                                                          // Funk
    {6, nullptr},                                                          // Grunge
    {63, nullptr},                                                         // Jungle
    {98, "Easy Listening,EasyListening,Easy-Listening"},                   // Easy Listening
    {11, nullptr},                                                         // Oldies
    {2, nullptr},                                                          // Country
    {0, nullptr},                                                          // Blues
    {8, nullptr},                                                          // Jazz
    {83, nullptr},                                                         // Swing
    {16, nullptr},                                                         // Reggae
    {21, nullptr},                                                         // Ska
    {20, nullptr},                                                         // Alternative
    {10, "New Age,NewAge,New-Age"},                                        // New Age
    {66, "New Wave,NewWave,New-Wave"},                                     // New Wave
    {9, nullptr},                                                          // Metal
    {137, "Heavy Metal,Heavy-Metal,HeavyMetal"},                           // Heavy Metal
    {22, "Death Metal,Death-Metal,DeathMetal"},                            // Death Metal
    {38, nullptr},                                                         // Gospel
    {80, nullptr},                                                         // Folk
    {102, nullptr},                                                        // Chanson
    {33, nullptr},                                                         // Instrumental
    {32, nullptr},                                                         // Classical
    {77, nullptr},                                                         // Musical
    {103, nullptr},                                                        // Opera
    {105, nullptr},                                                        // Sonata
    {106, nullptr},                                                        // Symphony
    {75, nullptr},                                                         // Polka
    {113, nullptr},                                                        // Tango
    {114, nullptr},                                                        // Samba
    {143, nullptr},                                                        // Salsa
    {85, nullptr},                                                         // Bebob
    {104, nullptr},                                                        // Chamber Music
    {96, nullptr},                                                         // Big Band
    {97, nullptr},                                                         // Chorus
    {45, nullptr},                                                         // Meditative
    {101, nullptr},                                                        // Speech
    {100, nullptr},                                                        // Humour
    {37, nullptr},                                                         // Sound Clip
    {59, nullptr},                                                         // Gangsta
    {119, nullptr},                                                        // Freestyle
    {27, "Trip-Hop,Trip Hop,TripHop"},                                     // Trip-Hop
    {81, "Folk Rock,Folk-Rock,FolkRock"},                                  // Folk Rock
    {90, nullptr},                                                         // Avantgarde
    {99, nullptr},                                                         // Acoustic
    {123, nullptr},                                                        // Acapella
    {132, "Brit Pop,BritPop,Brit-Pop"},                                    // BritPop
    {146, "Jpop,J-Pop,J Pop"},                                             // Jpop
    {126, nullptr},                                                        // Goa
    {129, nullptr},                                                        // Hardcore
    {130, nullptr},                                                        // Terror
    {131, nullptr},                                                        // Indie
    {133, nullptr},                                                        // Negerpunk
    {134, "Polsk Punk,Polsk-Punk,PolskPunk"},                              // Polsk Punk
    {139, nullptr},                                                        // Crossover
    {142, nullptr},                                                        // Merengue
    {145, nullptr},                                                        // Anime
    {147, nullptr},                                                        // Synthpop
    {82, nullptr},                                                         // National Folk
    {115, nullptr},                                                        // Folklore
    {53, "Pop-Folk,Pop Folk,PopFolk"},                                     // Pop Folk
    {25, "Euro-Techno,Euro Techno,EuroTechno"},                            // Euro Techno
    {54, "Eurodance,Euro-Dance,Euro Dance"},                               // Euro Dance
    {124, "Euro-House,Euro House,EuroHouse"},                              // Euro House
    {125, "Dance Hall,DanceHall,Dance-Hall"},                              // Dance Hall
    {128, "Club House,Club-House,ClubHouse"},                              // Club-House
    {138, "Black Metal,Black-Metal,BlackMetal"},                           // Black Metal
    {144, "Trash Metal,Trash-Metal,TrashMetal"},                           // Trash Metal
    {29, "Jazz+Funk,Jazz and Funk,Jazz'n'Funk"},                           // Jazz+Funk
    {74, "Acid Jazz,Acid-Jazz,AcidJazz"},                                  // Acid Jazz
    {1, "Classic Rock,ClassicRock"},                                       // Classic Rock
    {40, "AlternRock,AlternativeRock,Alternative Rock,Alternative-Rock"},  // Alternative Rock
    {56, "Southern Rock,SouthernRock,Southern-Rock"},                      // Southern Rock
    {47, "Instrumental Rock,InstrumentalRock,Instrumental-Rock"},          // Instrumental Rock
    {91, "Gothic Rock,Gothic-Rock,GothicRock"},                            // Gothic Rock
    {92, "Progressive Rock,Progressive-Rock,ProgressiveRock"},             // Progressive Rock
    {93, "Psychedelic Rock,Psychedelic-Rock,PsychedelicRock"},             // Psychedelic Rock
    {94, "Symphonic Rock,Symphonic-Rock,SymphonicRock"},                   // Symphonic Rock
    {95, "Slow Rock,Slow-Rock,SlowRock"},                                  // Slow Rock
    {55, nullptr},                                                         // Dream
    {76, nullptr},                                                         // Retro
    {84, nullptr},                                                         // Fast Fusion
    {111, nullptr},                                                        // Slow Jam
    {46, "Instrumental Pop,Instrumental-Pop,InstrumentalPop"},             // Instrumental Pop
    {62, "Pop/Funk,Pop Funk,Pop-Funk,PopFunk,Funk Pop,Funk-Pop,FunkPop"},  // Funk Pop
    {118, "Rhythmic Soul,RhythmicSoul,Rhythmic-Soul"},                     // Rhythmic Soul
    {73, "Acid Punk,Acid-Punk,AcidPunk"},                                  // Acid Punk
    {34, nullptr},                                                         // Acid
    {19, nullptr},                                                         // Industrial
    {52, nullptr},                                                         // Electronic
    {51, nullptr},                                                         // Techno-Industrial
    {48, nullptr},                                                         // Ethnic
    {49, nullptr},                                                         // Gothic
    {50, nullptr},                                                         // Darkwave
    {67, nullptr},                                                         // Psychadelic
    {26, nullptr},                                                         // Ambient
    {28, nullptr},                                                         // Vocal
    {30, nullptr},                                                         // Fusion
    {44, nullptr},                                                         // Space
    {87, nullptr},                                                         // Revival
    {89, nullptr},                                                         // Bluegrass
    {109, nullptr},                                                        // Porn Groove
    {108, nullptr},                                                        // Primus
    {64, nullptr},                                                         // Native American
    {88, nullptr},                                                         // Celtic
    {72, nullptr},                                                         // Tribal
    {71, nullptr},                                                         // Lo-Fi
    {58, nullptr},                                                         // Cult
    {86, nullptr},                                                         // Latin
    {60, nullptr},                                                         // Top 40
    {122, nullptr},                                                        // Drum Solo
    {23, nullptr},                                                         // Pranks
    {57, nullptr},                                                         // Comedy
    {65, nullptr},                                                         // Cabaret
    {110, nullptr},                                                        // Satire
    {24, nullptr},                                                         // Soundtrack
    {69, nullptr},                                                         // Showtunes
    {36, nullptr},                                                         // Game
    {39, nullptr},                                                         // Noise
    {61, nullptr},                                                         // Christian Rap
    {136, nullptr},                                                        // Christian Gangsta Rap
    {140, nullptr},                                                        // Contemporary Christian
    {141, nullptr},                                                        // Christian Rock
    {70, nullptr},                                                         // Trailer
    {116, nullptr},                                                        // Ballad
    {117, nullptr},                                                        // Power Ballad
    {120, nullptr},                                                        // Duet
    {41, nullptr},                                                         // Bass
    {107, nullptr},                                                        // Booty Bass
    {12, nullptr},                                                         // Other
};

static_assert(std::size(kGenreRows) == std::size(tags::texts::musicGenres));
static_assert(std::size(kGenreRows) == CMusicGenreList::kID3v1GenreCount);

}  // namespace

CMusicGenreList::CMusicGenreList()
{
    m_genres.reserve(std::size(kGenreRows));
    for (std::size_t index = 0; index < std::size(kGenreRows); ++index) {
        const fenn::TextKey& text = tags::texts::musicGenres[index];
        const GenreRow& row = kGenreRows[index];
        m_genres.push_back(fenn::make<CMusicGenre>(
            fenn::localize(text), row.aliases != nullptr ? row.aliases : text.defaultText, row.number));
    }
}

std::int32_t CMusicGenreList::getCount() const
{
    return static_cast<std::int32_t>(m_genres.size());
}

fenn::P<IMusicGenre> CMusicGenreList::getGenre(std::int32_t index) const
{
    if (index < 0 || index >= getCount()) throw fenn::CInvalidArgError(this, "getGenre", "index");
    return m_genres[static_cast<std::size_t>(index)];
}

std::int32_t CMusicGenreList::findIndex(const fenn::String& text) const
{
    for (std::size_t index = 0; index < m_genres.size(); ++index) {
        if (m_genres[index]->matches(text)) return static_cast<std::int32_t>(index);
    }
    return -1;
}

fenn::P<IMusicGenre> CMusicGenreList::findGenre(const fenn::String& text) const
{
    const std::int32_t index = findIndex(text);
    return index < 0 ? nullptr : getGenre(index);
}

std::int32_t CMusicGenreList::findIndexByNumber(std::int32_t number) const
{
    for (std::size_t index = 0; index < m_genres.size(); ++index) {
        if (m_genres[index]->getNumber() == number) return static_cast<std::int32_t>(index);
    }
    return -1;
}

fenn::P<IMusicGenre> CMusicGenreList::findGenreByNumber(std::int32_t number) const
{
    const std::int32_t index = findIndexByNumber(number);
    return index < 0 ? nullptr : getGenre(index);
}

}  // namespace tbx
