#include <filesystem>

#include "foundation/CError.h"
#include "tests/gui/builder/BuilderTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using tbtest::BuilderTest;
using tbtest::errorOf;

using GUIBuilderErrors = BuilderTest;

TEST_F(GUIBuilderErrors, BadContentGivesTheErrorOfItsKind)
{
    struct Case
    {
        const char* xml;
        const char* expected;
    };
    const Case cases[] = {
        {R"(<button id="c" backcolor="#12345"/>)", "Error parsing color value."},
        {R"(<button id="c" textcolor="123456"/>)", "Error parsing color value."},
        {R"(<gizmo id="c"/>)", "Unknown component type: gizmo."},
        {R"(<frame id="c" layout="diagonal"/>)", "Unknown layout type: 'diagonal'."},
        {R"(<layoutgroup id="c" layout="growvert"/>)", "Parent window is needed but not specified."},
        {R"(<paddedlayoutgroup id="c" layout="layer" width="4"/>)", "Parent window is needed but not specified."},
        {R"(<button id="c"><sizelimit sizetype="min" text="x"/></button>)", "No size limit type provided."},
        {R"(<button id="c"><sizelimit limit="sideways" sizetype="min"/></button>)",
         "Unknown size limit type: sideways."},
        {R"(<button id="c"><sizelimit limit="lower" sizetype="huge"/></button>)", "Unknown size type: huge."},
        {R"(<button id="c" windowsystem="nosuch"/>)", "Invalid window system id: 'nosuch'."},
        {R"(<frame id="c" layout="growvert"><button childwindowsystem="other"/></frame>)",
         "Invalid window system id: 'other'."},
        {R"(<splitpanel id="c" orient="diagonal"/>)", "Unknown split panel orientation: diagonal."},
        {R"(<scrollpanel id="c" scroll="sideways"/>)", "Unknown scroll type: sideways."},
        // Numbers past the range of layouts, and ones that are not finite.
        {R"(<sliderbar id="c" maxpos="2147483648"/>)", "invalid value '2147483648'"},
        {R"(<button id="c"><sizelimit limit="lower" sizetype="min" heightchars="2000000000"/></button>)",
         "invalid value '2000000000'"},
        {R"(<progressbar id="c" barheightfactor="nan"/>)", "invalid value 'nan'"},
    };
    for (const Case& test : cases) {
        m_builder->clearDocuments();
        load("bad.xml", std::string("<l>") + test.xml + "</l>");
        const std::string error = errorOf<fenn::CError>([&] { m_builder->build("c", nullptr, nullptr); });
        EXPECT_TRUE(error == test.expected ||
                    (test.expected[0] == 'i' && error.find(test.expected) != std::string::npos))
            << test.xml << ": " << error;
    }
    EXPECT_EQ(errorOf<fenn::CError>([&] { m_builder->build("C", nullptr, nullptr); }),
              "Cannot build component with the ID 'C': component not found.");
}

TEST_F(GUIBuilderErrors, BrokenFilesAndIncludesAreReportedWhenLoaded)
{
    const std::string missingUri = "<l>\n  <frame id=\"f\">\n    <include/>\n  </frame>\n</l>";
    EXPECT_EQ(errorOf<fenn::CParseError>([&] { load("missing.xml", missingUri); }),
              "Error parsing GUI file (file '" + uriText("missing.xml") + "', line 3). No attribute 'uri' was found.");
    EXPECT_EQ(
        errorOf<fenn::CParseError>([&] { load("broken.xml", "<l>\n<frame id=\"f\">\n<button id=/>\n</frame></l>"); }),
        "XML Parse Error in file '" + uriText("broken.xml") + "', line 3.");
    EXPECT_EQ(errorOf<fenn::CParseError>([&] { load("empty.xml", ""); }),
              "XML Parse Error in file '" + uriText("empty.xml") + "', line ?.");
    // A broken file deep in the includes is found at load time too.
    writeFile("deep/bad.inc.xml", "<x><button id=\"b\"></x>");
    writeFile("deep/good.inc.xml", "<x><include uri=\"bad.inc.xml\"/></x>");
    EXPECT_NE(errorOf<fenn::CParseError>([&] {
                  load("outer.xml", "<l><include uri=\"deep/good.inc.xml\"/></l>");
              }).find("bad.inc.xml"),
              std::string::npos);

    writeFile("a.inc.xml", "<x><include uri=\"b.inc.xml\"/></x>");
    writeFile("b.inc.xml", "<x><button id=\"b\"/><include uri=\"a.inc.xml\"/></x>");
    EXPECT_NE(errorOf<fenn::CError>([&] {
                  load("cycle.xml", "<l><include uri=\"a.inc.xml\"/></l>");
              }).find("includes itself"),
              std::string::npos);
    EXPECT_NE(errorOf<fenn::CError>([&] {
                  load("self.xml", "<l><frame id=\"f\"><include uri=\"self.xml\"/></frame></l>");
              }).find("includes itself"),
              std::string::npos);
    // A chain longer than the limit, without a cycle.
    for (int level = 0; level < 20; ++level) {
        writeFile("chain" + std::to_string(level) + ".inc.xml",
                  "<x><include uri=\"chain" + std::to_string(level + 1) + ".inc.xml\"/></x>");
    }
    writeFile("chain20.inc.xml", "<x/>");
    EXPECT_NE(errorOf<fenn::CError>([&] {
                  load("chain.xml", "<l><include uri=\"chain0.inc.xml\"/></l>");
              }).find("nested too deeply"),
              std::string::npos);
    // A few small files that include each other many times: the walk stops
    // at its limit instead of visiting them ten thousand times over.
    const auto includes = [](const std::string& uri, int count) {
        std::string text;
        for (int copy = 0; copy < count; ++copy) text += "<include uri=\"" + uri + "\"/>";
        return text;
    };
    writeFile("fan1.inc.xml", "<x>" + includes("fan2.inc.xml", 30) + "</x>");
    writeFile("fan2.inc.xml", "<x>" + includes("fan3.inc.xml", 30) + "</x>");
    writeFile("fan3.inc.xml", "<x><space width=\"1\"/></x>");
    EXPECT_NE(errorOf<fenn::CError>([&] {
                  load("fan.xml", "<l><frame id=\"f\">" + includes("fan1.inc.xml", 12) + "</frame></l>");
              }).find("too many times"),
              std::string::npos);
    // A file that is missing altogether.
    EXPECT_THROW(m_builder->loadFile(fenn::CURI::fromPath(fenn::String::copyOf((m_folder / "none.xml").string()))),
                 fenn::CException);
}

TEST_F(GUIBuilderErrors, AFailedBuildLeavesTheParentUsable)
{
    load("half.xml", R"(<l>
        <layoutgroup id="half" layout="growvert">
            <button id="first" text="Made"/>
            <button id="second" backcolor="red"/>
        </layoutgroup>
    </l>)");
    tbtest::GuiTestFrame frame(300, 200);
    EXPECT_EQ(errorOf<fenn::CParseError>([&] { m_builder->build("half", &frame.frame(), nullptr); }),
              "Error parsing color value.");
    // What was made before the error is the parent's; it still lays out and paints.
    EXPECT_NE(frame.frame().findWindow("first"), nullptr);
    frame.render();
}

}  // namespace
