#include <gtest/gtest.h>

#include <clocale>

#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

using namespace fenn;

namespace {

std::string text(const String& value)
{
    return value.toStdString();
}

// Prints as a fixed text, so descriptions that quote it are known exactly.
class CNamed : public CObject
{
public:
    String toString() const override { return "track 7"; }
};

// One of each error class, with and without their optional parts.
std::vector<P<CException>> oneOfEach()
{
    const auto named = make<CNamed>();
    return {make<CException>("Title", "Text"),
            make<CError>(),
            make<CParseError>("bad number"),
            make<CInvalidVolumeIDError>("Q:"),
            make<CNoSuchObjectError>(),
            make<CReadOnlyError>("tag list"),
            make<CObjectError>(named.get(), "Cannot play %OBJECTDESC%"),
            make<CCastError>(named.get(), typeid(IAction)),
            make<CInvalidArgError>(named.get(), "seek", "position"),
            make<CInvalidObjectStateError>(named.get(), "closed"),
            make<CEndOfEnumError>(named.get()),
            make<CMethodNotImplementedError>(named.get(), "render"),
            make<CURIError>("", "Cannot reach %URI%"),
            make<CURITypeNotSupportedError>(),
            make<CURITypeNotSupportedError>("gopher://host/"),
            make<CURIFormatError>(),
            make<CURIFormatError>("http//host"),
            make<CFileError>("/music/a.wav", "Cannot open %URI%"),
            make<CFileNotFoundError>(),
            make<CFileNotFoundError>("/music/a.wav"),
            make<CFileFormatNotSupportedError>(),
            make<CFileFormatNotSupportedError>("/music/a.xyz"),
            make<CStreamError>("/music/a.wav", "Cannot read %URI%"),
            make<CEndOfStreamError>(),
            make<CEndOfStreamError>("/music/a.wav"),
            make<CStreamClosedError>("/music/a.wav", "%URI% is closed")};
}

TEST(Errors, DescriptionsFollowTheirClass)
{
    const CError empty("", "");
    EXPECT_EQ(text(empty.getTitle()), "Error");
    EXPECT_EQ(text(empty.getDescription()), "Unspecified error");
    EXPECT_EQ(text(CObjectError(CObjectDescription()).getTitle()), "Object error");
    EXPECT_EQ(text(CInvalidVolumeIDError("Q:").getTitle()), "Invalid Volume ID Error");

    const auto named = make<CNamed>();
    const String className = getClassName(typeid(CNamed));
    EXPECT_TRUE(className.contains("CNamed"));
    const std::pair<P<CException>, std::string> cases[] = {
        {make<CError>("Disk", "Disk full"), "Disk full"},
        {make<CError>("Disk", String::copyOfUTF16(u"Disk full")), "Disk full"},
        {make<CParseError>(String::copyOfLatin1("caf\xE9")), "caf\xC3\xA9"},
        {make<CObjectError>(named.get()), "object: track 7"},
        {make<CObjectError>(typeid(CNamed)), "object class: " + text(className)},
        {make<CObjectError>(static_cast<const IBase*>(nullptr)), "unknown object"},
        {make<CObjectError>(named.get(), "Cannot play %OBJECTDESC% now"), "Cannot play object: track 7 now"},
        {make<CInvalidArgError>(named.get(), "seek", "position -1"),
         "An invalid argument was passed to method 'seek' of 'object: track 7': position -1"},
        {make<CInvalidArgError>(CObjectDescription(), "", ""),
         "An invalid argument was passed to method 'unspecified method' of 'unknown object': unspecified argument"},
        {make<CInvalidObjectStateError>(named.get()), "The object is in an invalid state (object: track 7)"},
        {make<CEndOfStreamError>("file:///music/a.wav"), "Unexpected end of data stream (uri: 'file:///music/a.wav')."},
        {make<CFileNotFoundError>("/music/a.wav"), "The file '/music/a.wav' was not found."},
        {make<CFileFormatNotSupportedError>(), "The file format is not supported."},
        {make<CFileFormatNotSupportedError>("a.xyz"), "The format of file 'a.xyz' is not supported."},
        {make<CURIFormatError>(), "The URI has an invalid format."},
        {make<CURIFormatError>("http//host"), "The URI ('http//host') has an invalid format."},
        {make<CURITypeNotSupportedError>("gopher://host/"), "This type URI is not supported."},
        {make<CURIError>("ftp://host/", "Cannot reach %URI% today"), "Cannot reach ftp://host/ today"},
        {make<CURIError>("", "Cannot reach %URI%"), "Cannot reach <uri unknown>"},
        {make<CStreamClosedError>("", "%URI% is closed"), "<uri unknown> is closed"},
        {make<CInvalidVolumeIDError>("Q:"), "Invalid volume id: Q:"},
        {make<CNoSuchObjectError>(), "No such object."},
        {make<CReadOnlyError>("tag list"), "The object (tag list) is read-only and cannot be changed."}};
    // what() gives the locale's multibyte text; the program runs in a UTF-8 locale.
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    for (const auto& [error, expected] : cases) {
        EXPECT_EQ(text(error->getDescription()), expected);
        EXPECT_STREQ(error->what(), expected.c_str());
    }
    std::setlocale(LC_CTYPE, "C");

    const std::string noFile = text(CFileNotFoundError().getDescription());
    EXPECT_TRUE(noFile.starts_with("The file") && noFile.ends_with("not found.")) << noFile;
    const std::string endOfEnum = text(CEndOfEnumError(named.get()).getDescription());
    EXPECT_TRUE(endOfEnum.starts_with("The object is in an invalid state (object: track 7)") &&
                endOfEnum.ends_with("end of enumeration already reached"))
        << endOfEnum;
}

TEST(Errors, CloneKeepsTheDynamicType)
{
    for (const P<CException>& error : oneOfEach()) {
        const CException& original = *error;
        P<CException> copy = error->clone();
        const CException& copied = *copy;
        ASSERT_EQ(typeid(copied), typeid(original)) << typeid(original).name();
        EXPECT_NE(copy.get(), error.get());
        EXPECT_EQ(copy->getReferenceCount(), 1);
        EXPECT_EQ(copy->getTitle(), original.getTitle());
        EXPECT_EQ(copy->getDescription(), original.getDescription());
        try {
            copy->raise();
        } catch (const CException& thrown) {
            EXPECT_EQ(typeid(thrown), typeid(original)) << typeid(original).name();
        }
    }
    const CFileNotFoundError notFound("/music/a.wav");
    EXPECT_EQ(text(notFound.clone()->getURI().getRawURI()), "/music/a.wav");
    const P<CException> viaBase = static_cast<const CException&>(notFound).clone();
    EXPECT_NE(dynamic_cast<CFileNotFoundError*>(viaBase.get()), nullptr);
    EXPECT_THROW(viaBase->raise(), CFileNotFoundError);
}

// Translates two keys, answers the rest with their defaults and records
// every key it is asked for.
class CTestLocalizer : public CObject, public virtual IStringLocalizer
{
public:
    mutable std::set<std::string> asked;
    String localize(const String& key, const String& defaultText) const override
    {
        asked.insert(text(key));
        if (key == "fenn.CNoSuchObjectError.desc") return "Kein solches Objekt.";
        if (key == "fenn.CFileNotFoundError.Desc") return "Datei '%FILE%' fehlt.";
        return defaultText;
    }
};

class LocalizerScope
{
public:
    explicit LocalizerScope(P<IStringLocalizer> localizer) { setStringLocalizer(std::move(localizer)); }
    ~LocalizerScope() { setStringLocalizer(nullptr); }
};

TEST(Errors, TextsHaveKeysAndDefaultsAndGoThroughTheLocalizer)
{
    std::set<std::string> keys;
    for (const TextKey& entry : texts::all) {
        ASSERT_TRUE(entry.key != nullptr && entry.defaultText != nullptr);
        EXPECT_STRNE(entry.key, "");
        EXPECT_STRNE(entry.defaultText, "") << entry.key;
        EXPECT_TRUE(keys.insert(entry.key).second) << "duplicate key " << entry.key;
    }
    std::istringstream expectedKeys(
        "fenn.CEndOfEnumError.desc fenn.CURITypeNotSupportedError.GeneralDesc fenn.CURITypeNotSupportedError.Desc "
        "fenn.CURIFormatError.GeneralDesc fenn.CURIFormatError.Desc fenn.CFileNotFoundError.GeneralDesc "
        "fenn.CFileNotFoundError.Desc fenn.CFileFormatNotSupportedError.Desc.FileUnknown "
        "fenn.CFileFormatNotSupportedError.Desc fenn.CNoSuchObjectError.desc fenn.readOnlyErrorObjectDesc "
        "fenn.CMultiEnum.addLocked fenn.CConstMultiEnum.addLocked");
    for (std::string key; expectedKeys >> key;) EXPECT_EQ(keys.count(key), 1u) << key;

    {
        const auto localizer = make<CTestLocalizer>();
        const LocalizerScope scope(localizer);
        EXPECT_EQ(text(CNoSuchObjectError().getDescription()), "Kein solches Objekt.");
        EXPECT_EQ(text(CFileNotFoundError("a.wav").getDescription()), "Datei 'a.wav' fehlt.");
        const std::regex placeholder("%[A-Z]+%");
        for (const P<CException>& error : oneOfEach()) {
            const std::string description = text(error->getDescription());
            EXPECT_FALSE(description.empty() || std::regex_search(description, placeholder)) << description;
        }
        EXPECT_FALSE(localizer->asked.empty());
        for (const std::string& key : localizer->asked)
            EXPECT_EQ(keys.count(key), 1u) << "key outside the table: " << key;
    }
    EXPECT_EQ(text(CNoSuchObjectError().getDescription()), "No such object.");
}

}  // namespace
