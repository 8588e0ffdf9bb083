// The catalogue of system variables and the texts of their values, called as they are.
#include "host/base/unicode.h"
#include "host/edit/input.h"
#include "host/edit/sysvars.h"
#include "sdk/vchost.h"
#include "sysvar/Dlg_SysVariables.h"
#include "sysvar/SysvarValues.h"
#include "tests/extend/host_support.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <fmt/format.h>
#include <fstream>
#include <random>
#include <unistd.h>

namespace {

std::vector<SysvarData> entriesOf(std::wstring_view text)
{
    std::vector<SysvarData> entries;
    CatalogueReader reader(text);
    for (SysvarData record; reader.next(record);)
        entries.push_back(record);
    return entries;
}

std::wstring namesOf(std::wstring_view text)
{
    std::wstring names;
    for (const SysvarData& entry : entriesOf(text))
        names += entry.name.str() + (entry.readOnly ? L"# " : L"! ");
    return names;
}

TEST(SysvarCatalogue, AnEntryHasItsFields)
{
    const auto entries = entriesOf(L"#A|Real|Drawing|1.5\r\nfirst\\nsecond\r\n!B|String||\r\n\r\n");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, L"A");
    EXPECT_EQ(entries[0].type, L"Real");
    EXPECT_EQ(entries[0].savedIn, L"Drawing");
    EXPECT_EQ(entries[0].initial, L"1.5");
    EXPECT_EQ(entries[0].description, L"first\\nsecond");
    EXPECT_TRUE(entries[0].readOnly);
    EXPECT_EQ(entries[1].savedIn, L"");
    EXPECT_EQ(entries[1].initial, L"");
    EXPECT_EQ(entries[1].description, L"");
    EXPECT_FALSE(entries[1].readOnly);
}

TEST(SysvarCatalogue, WhichEntriesAreFound)
{
    const struct {
        const wchar_t *what, *text, *names;
    } cases[] = {
        {L"nothing", L"", L""},
        {L"both marks", L"!A|t|s|i\r\nd\r\n#B|t|s|i\r\nd\r\n", L"A! B# "},
        {L"only writable ones are read as empty", L"!A|t|s|i\r\nd\r\n!B|t|s|i\r\nd\r\n", L""},
        {L"only read-only ones too", L"#A|t|s|i\r\nd\r\n", L""},
        {L"a mark in a description is none, but counts for the first entry",
         L"!A|t|s|i\r\nwith a #\r\n!B|t|s|i\r\nd\r\n", L"A! B! "},
        {L"what stands between entries is passed over",
         L"notes\r\n#A|t|s|i\r\nd\r\n\r\nmore notes\r\n!B|t|s|i\r\nd\r\n", L"A# B! "},
        {L"fields run on where bars are missing", L"#A|t\r\nd\r\n!B|t|s|i\r\nd\r\n!C|t|s|i\r\nd\r\n", L"A# C! "},
        {L"a mark at the very end", L"!A|t|s|i\r\nd\r\n#", L"A! # "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(namesOf(c.text), c.names) << CStdStrW(c.what).GetString();
}

TEST(SysvarCatalogue, TheCharacterBeforeALineFeedIsDropped)
{
    const auto entries = entriesOf(L"#A|t|s|12\nlast\n!B|t|s|\nd\n!C|t|s|7");
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].initial, L"1");
    EXPECT_EQ(entries[0].description, L"las");
    EXPECT_EQ(entries[1].initial, L"");
    EXPECT_EQ(entries[2].initial, L"7");
}

TEST(SysvarCatalogue, BrokenFilesEnd)
{
    std::mt19937 random(7);
    const std::wstring characters = L"#!|\r\nA";
    for (int round = 0; round < 500; ++round) {
        std::wstring text;
        for (unsigned i = random() % 60; i > 0; --i)
            text += characters[random() % characters.size()];
        EXPECT_LE(entriesOf(text).size(), text.size());
    }
}

TEST(SysvarCatalogue, AFileThatIsNotThereIsEmpty)
{
    EXPECT_TRUE(readCatalogue(L"/no/such/file").empty());
    EXPECT_TRUE(readCatalogue(CStdStrW(testing::TempDir().c_str())).empty());
}

resbuf shortNode(int type, int value)
{
    resbuf node = {};
    node.restype = std::int16_t(type);
    node.resval.rint = std::int16_t(value);
    return node;
}

resbuf realNode(int type, double value)
{
    resbuf node = {};
    node.restype = std::int16_t(type);
    node.resval.rreal = value;
    return node;
}

resbuf pointNode(int type, double x, double y, double z)
{
    resbuf node = {};
    node.restype = std::int16_t(type);
    node.resval.rpoint[0] = x;
    node.resval.rpoint[1] = y;
    node.resval.rpoint[2] = z;
    return node;
}

resbuf longNode(long value)
{
    resbuf node = {};
    node.restype = RTLONG;
    node.resval.rlong = std::int32_t(value);
    return node;
}

// For what releases the text.
resbuf textNode(int type, const wchar_t* text)
{
    resbuf node = {};
    node.restype = std::int16_t(type);
    vcutNewString(text, node.resval.rstring);
    return node;
}

// For what only reads it.
resbuf literalNode(int type, const wchar_t* text)
{
    resbuf node = {};
    node.restype = std::int16_t(type);
    node.resval.rstring = const_cast<wchar_t*>(text);
    return node;
}

SysvarData recordOf(const wchar_t* type, const wchar_t* name = L"X")
{
    SysvarData record;
    record.name = name;
    record.type = type;
    return record;
}

constexpr int kForeign = RTANG;  // a kind of value that the catalogue alone explains

TEST(SysvarValues, AsTheyAreShown)
{
    const struct {
        const wchar_t* catalogueType;
        const wchar_t* name;
        resbuf value;
        const wchar_t *current, *type;
    } cases[] = {
        {L"Switch", L"X", shortNode(RTSHORT, 1), L"1", L"Integer"},
        {L"Enum", L"X", shortNode(RTSHORT, -32768), L"-32768", L"Integer"},
        {L"Integer", L"X", longNode(-70000), L"-70000", L"Long"},
        {L"Integer", L"X", realNode(RTREAL, 0.33335), L"0.3333", L"Real"},
        {L"", L"X", realNode(RTREAL, -1e20), L"-100000000000000000000.0000", L"Real"},
        {L"Real", L"UCSAXISANG", realNode(RTREAL, M_PI / 2), L"90", L"Integer"},
        {L"Real", L"UCSAXISANG", realNode(RTREAL, -0.7), L"-40", L"Integer"},
        {L"Real", L"UCSAXISANG", realNode(RTREAL, 1e300), L"1000000000", L"Integer"},
        {L"Real", L"UcsAxisAng", realNode(RTREAL, 1.5), L"1.5000", L"Real"},
        {L"3D vector", L"X", pointNode(RTPOINT, 1, -2, 3), L"1.0000,-2.0000", L"2D point"},
        {L"2D point", L"X", pointNode(RT3DPOINT, 1, -2, 3), L"1.0000,-2.0000,3.0000", L"3D point"},
        {L"Real", L"X", literalNode(RTSTR, L"100 %d %s"), L"100 %d %s", L"String"},
        {L"switch", L"X", shortNode(kForeign, 0), L"OFF", L"switch"},
        {L"Switch", L"X", shortNode(kForeign, 7), L"ON", L"Switch"},
        {L"ENUM", L"X", shortNode(kForeign, 3), L"3", L"ENUM"},
        {L"real", L"X", realNode(kForeign, 2.5), L"2.5000", L"real"},
        {L"2D point", L"X", pointNode(kForeign, 1, 2, 3), L"1.0000,2.0000", L"2D point"},
        {L"3D vector", L"X", pointNode(kForeign, 1, 2, 3), L"1.0000,2.0000,3.0000", L"3D vector"},
        {L"Single character", L"X", literalNode(kForeign, L"."), L".", L"Single character"},
        {L"Mystery", L"X", shortNode(kForeign, 5), L"5", L"Mystery"},
    };
    for (const auto& c : cases) {
        SysvarData record = recordOf(c.catalogueType, c.name);
        takeValue(record, c.value);
        EXPECT_EQ(record.current, c.current) << CStdStrW(c.current).GetString();
        EXPECT_EQ(record.type, c.type);
        EXPECT_EQ(record.newValue, c.current);
    }
}

TEST(SysvarValues, AReadOnlyOneSaysSo)
{
    SysvarData record = recordOf(L"Real");
    record.readOnly = true;
    takeValue(record, shortNode(RTSHORT, 4));
    EXPECT_EQ(record.current, L"4");
    EXPECT_EQ(record.newValue, L"(Read-only)");
}

TEST(SysvarValues, ALongTextIsCut)
{
    SysvarData record = recordOf(L"String");
    resbuf value = textNode(RTSTR, std::wstring(3000, L'x').c_str());
    takeValue(record, value);
    EXPECT_EQ(record.current.GetLength(), 2048);
    record.newValue = CStdStrW(L'y', 3000);
    ASSERT_TRUE(putNewValue(record, value));
    EXPECT_EQ(CStdStrW(value.resval.rstring), CStdStrW(L'y', 2048));
    releaseValue(value);
}

std::string shown(const resbuf& value)
{
    const double* at = value.resval.rpoint;
    switch (value.restype) {
    case RTSHORT:
    case kForeign:
        return fmt::format("short {}", value.resval.rint);
    case RTLONG:
        return fmt::format("long {}", value.resval.rlong);
    case RTREAL:
        return fmt::format("real {:.6g}", value.resval.rreal);
    case RTPOINT:
    case RT3DPOINT:
        return fmt::format("{}D {:g} {:g} {:g}", value.restype == RTPOINT ? 2 : 3, at[0], at[1], at[2]);
    case RTSTR:
        return "text " + wideToUtf8(value.resval.rstring);
    default:
        return "?";
    }
}

struct Given {
    const wchar_t *type, *name, *text;
    const char* result;  // empty where nothing is to be set
};

TEST(SysvarValues, AsTheyAreAppliedOnOk)
{
    const struct {
        Given given;
        resbuf before;
    } cases[] = {
        {{L"INTEGER", L"X", L"12 pieces", "short 12"}, shortNode(RTSHORT, 1)},
        {{L"Enum", L"X", L"on", "short 0"}, shortNode(RTSHORT, 1)},
        {{L"Short", L"X", L"70000", ""}, shortNode(RTSHORT, 1)},
        {{L"Integer", L"UCSAXISANG", L"30.9", "real 0.523599"}, realNode(RTREAL, 1)},
        {{L"Integer", L"ucsaxisang", L"30", "short 30"}, shortNode(RTSHORT, 1)},
        {{L"Long", L"X", L"-70000", "long -70000"}, longNode(1)},
        {{L"Long", L"X", L"99999999999", "long 2147483647"}, longNode(1)},
        {{L"real", L"X", L"-2.5e1m", "real -25"}, realNode(RTREAL, 1)},
        {{L"2D point", L"X", L"1.5,-2,7", "2D 1.5 -2 0"}, pointNode(RTPOINT, 9, 9, 9)},
        {{L"2D point", L"X", L",2", "2D 0 2 0"}, pointNode(RTPOINT, 9, 9, 9)},
        {{L"2D point", L"X", L"5", ""}, pointNode(RTPOINT, 9, 9, 9)},
        {{L"3D point", L"X", L"1,2,3", "3D 1 2 3"}, pointNode(RT3DPOINT, 9, 9, 9)},
        {{L"3D vector", L"X", L"1,2", ""}, pointNode(RT3DPOINT, 9, 9, 9)},
        {{L"Switch", L"X", L"on", "text ON"}, shortNode(kForeign, 0)},
        {{L"Switch", L"X", L"Off", "text OFF"}, shortNode(kForeign, 0)},
        {{L"Switch", L"X", L"1", "short 1"}, shortNode(kForeign, 0)},
        {{L"Switch", L"X", L"2", ""}, shortNode(kForeign, 0)},
        {{L"String", L"X", L"", "text "}, textNode(RTSTR, L"before")},
        {{L"String", L"X", L"a %s b", "text a %s b"}, textNode(RTSTR, L"before")},
        {{L"Single character", L"X", L"7", "short 7"}, shortNode(kForeign, 0)},
        {{L"Mystery", L"X", L"7", "short 7"}, shortNode(kForeign, 0)},
    };
    for (const auto& [given, before] : cases) {
        SysvarData record = recordOf(given.type, given.name);
        record.newValue = given.text;
        resbuf value = before;
        const bool isSet = putNewValue(record, value);
        EXPECT_EQ(isSet ? shown(value) : "", given.result) << given.result;
        releaseValue(value);
    }
}

TEST(SysvarValues, AsTheyAreReadFromAFile)
{
    const Given cases[] = {
        {L"integer", L"X", L"12", "short 12"},
        {L"Short", L"X", L"-40000", ""},
        {L"Switch", L"X", L"on", "short 0"},
        {L"Switch", L"X", L"1", "short 1"},
        {L"Long", L"X", L"70000", "long 70000"},
        {L"Long", L"X", L"99999999999", "long 2147483647"},
        {L"Real", L"X", L"2.5", "real 2.5"},
        {L"2D point", L"X", L"1,2", "2D 1 2 0"},
        {L"2D point", L"X", L"5", "2D 0 0 0"},
        {L"2D point", L"X", L",5", "2D 0 0 0"},
        {L"3D point", L"X", L"1,2,3,4", "3D 1 2 3"},
        {L"3D vector", L"X", L"7", "3D 0 0 0"},
        {L"String", L"X", L"two words", "text two words"},
        {L"Single character", L"X", L".", "text ."},
        {L"Integer", L"ucsaxisang", L"180", "real 3.14159"},
        {L"Mystery", L"X", L"3", "short 3"},
    };
    for (const Given& given : cases) {
        resbuf value = {};
        const bool isSet = makeValue(recordOf(given.type, given.name), given.text, value);
        EXPECT_EQ(isSet ? shown(value) : "", given.result) << given.result;
        releaseValue(value);
    }
}

TEST(SysvarValues, AsScriptsWriteThem)
{
    const struct {
        const wchar_t* type;
        resbuf value;
        const wchar_t* written;
    } cases[] = {
        {L"Integer", shortNode(RTSHORT, 5), L"as shown"},
        {L"Long", longNode(-70000), L"-70000"},
        {L"Switch", shortNode(kForeign, 1), L"1"},
        {L"Real", realNode(RTREAL, 1), L"1.0"},
        {L"Real", realNode(RTREAL, 0.1), L"0.1"},
        {L"Real", realNode(RTREAL, 1.0 / 3), L"0.3333333333333333"},
        {L"Real", realNode(RTREAL, 1e20), L"1e+20"},
        {L"2D point", pointNode(RTPOINT, 1, -2, 0), L"'(1.0000 -2.0000)"},
        {L"3D vector", pointNode(RT3DPOINT, 0, 0, 1), L"'(0.0000 0.0000 1.0000)"},
        {L"String", literalNode(RTSTR, L"C:\\plans \"new\""), L"\"C:\\\\plans \\\"new\\\"\""},
        {L"Mystery", shortNode(kForeign, 5), L"5"},
    };
    for (const auto& c : cases) {
        SysvarData record = recordOf(c.type);
        record.current = L"as shown";
        EXPECT_EQ(scriptValue(record, c.value), c.written) << CStdStrW(c.written).GetString();
    }
}

TEST(SysvarFilters, LinesAreSplitAtTheirFirstBlank)
{
    const struct {
        const wchar_t *line, *name, *value;
    } cases[] = {
        {L"_A 1", L"_A", L"1"},      {L"a  two words \r", L"_a", L"two words"}, {L"  A 1,2 ", L"_A", L"1,2"},
        {L"A", nullptr, nullptr},    {L"_DIMPOST ", nullptr, nullptr},          {L"", nullptr, nullptr},
        {L"A\t1", nullptr, nullptr},
    };
    for (const auto& c : cases) {
        const auto line = parseFilterLine(c.line);
        ASSERT_EQ(line.has_value(), c.name != nullptr) << CStdStrW(c.line).GetString();
        if (line) {
            EXPECT_EQ(line->name, c.name);
            EXPECT_EQ(line->value, c.value);
        }
    }
}

TEST(SysvarFilters, TheFirstOfANameIsFound)
{
    SysvarArray records;
    for (const wchar_t* name : {L"A", L"_B", L"b", L"a"})
        records.Add(recordOf(L"Real", name));
    const auto any = [](const SysvarData&) { return true; };
    const SysvarIndex index(records, SysvarIndex::Underscore::Counts, any);
    EXPECT_EQ(index.find(L"a"), 0);
    EXPECT_EQ(index.find(L"B"), 2);
    EXPECT_EQ(index.find(L"_b"), 1);
    EXPECT_EQ(index.find(L"C"), -1);
    const SysvarIndex either(records, SysvarIndex::Underscore::Optional, any);
    EXPECT_EQ(either.find(L"_a"), 0);
    EXPECT_EQ(either.find(L"B"), 1);
}

// A host whose own files lie in a folder of the test's.
class Moved : public VcDbHostApplicationServices {
public:
    explicit Moved(std::string folder) : m_folder(CStdStrW(folder.c_str())) { vcdbSetHostApplicationServices(this); }
    ~Moved() override { vcdbSetHostApplicationServices(m_before); }
    VcDbDatabase* workingDatabase() const override { return m_before->workingDatabase(); }
    void setWorkingDatabase(VcDbDatabase* database) override { m_before->setWorkingDatabase(database); }
    const wchar_t* getMachineRegistryProductRootKey() const override
    {
        return m_before->getMachineRegistryProductRootKey();
    }
    const wchar_t* getUserRegistryProductRootKey() const override { return m_before->getUserRegistryProductRootKey(); }
    const wchar_t* getInstallFolder() const override { return m_folder; }

private:
    VcDbHostApplicationServices* m_before = vcdbHostApplicationServices();
    CStdStrW m_folder;
};

class SysvarDialog : public CommandTest {
protected:
    SysvarDialog() { std::filesystem::create_directories(m_folder + "Support"); }
    ~SysvarDialog() override { std::filesystem::remove_all(m_folder); }

    void write(const char* catalogue) { std::ofstream(m_folder + "Support/SYSVDLG.DAT") << catalogue; }

    // The names that the dialog takes from the catalogue.
    std::wstring opened()
    {
        CDlg_SysVariables dialog;
        dialog.OnInitDialog();
        std::wstring names;
        for (int i = 0; i < dialog.Records().GetSize(); ++i)
            names += dialog.Records().GetAt(i).name.str() + L" ";
        EXPECT_EQ(dialog.GetPosition(), names.empty() ? -1 : 0);
        return names;
    }

    std::string m_folder = testing::TempDir() + "sysvdlg-" + std::to_string(getpid()) + "/";
    Moved m_moved{m_folder};
};

TEST_F(SysvarDialog, WithoutACatalogueItIsEmpty) { EXPECT_EQ(opened(), L""); }

TEST_F(SysvarDialog, NamesThatTheHostDoesNotKnowAreLeftOut)
{
    write("#ACADVER|String|Not "
          "saved|\r\nd\r\n!NOSUCH|Real|Drawing|1\r\nd\r\n!USERI1|Switch|Drawing|0\r\nd\r\n!|||\r\n\r\n");
    EXPECT_EQ(opened(), L"ACADVER USERI1 ");
}

TEST_F(SysvarDialog, ACatalogueWithoutReadOnlyEntriesIsReadAsEmpty)
{
    write("!USERI1|Integer|Drawing|0\r\nd\r\n");
    EXPECT_EQ(opened(), L"");
}

// A click by the program or by a key leaves the focus where it is.
TEST_F(SysvarDialog, OkTakesTheValueThatIsStillInHand)
{
    write("#ACADVER|String|Not saved|\r\nd\r\n!USERI1|Integer|Drawing|0\r\nd\r\n");
    CDlg_SysVariables dialog;
    dialog.OnInitDialog();
    QWidget* form = dialog.Widget();
    form->show();
    QApplication::setActiveWindow(form);
    form->findChild<QListWidget*>("listWidget")->setCurrentRow(1);
    auto* edit = form->findChild<QLineEdit*>("lEditNewValue");
    edit->setFocus();
    edit->setText("5");
    EXPECT_EQ(dialog.Records().GetAt(1).newValue, L"0");
    form->findChild<QPushButton*>("pBtnOK")->click();
    EXPECT_EQ(dialog.Records().GetAt(1).newValue, L"5");
}

TEST_F(SysvarDialog, WhereNoLogCanBeWrittenThereIsNoMessage)
{
    write("#ACADVER|String|Not saved|\r\nd\r\n!USERI1|Integer|Drawing|0\r\nd\r\n!USERI2|Integer|Drawing|0\r\nd\r\n");
    std::ofstream(m_folder + "faulty.svf") << "USERI1 70000\nUSERI2 3\n";
    const auto log = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "sysvdlg_Drawing1.err";
    std::filesystem::create_directory(log);
    editor().vars().force("FILEDIA", 0);
    editor().pushSource(std::make_unique<vk::edit::ScriptSource>("test", m_folder + "faulty.svf\n"));
    CDlg_SysVariables dialog;
    dialog.OnInitDialog();
    dialog.OnButtonRead();
    std::filesystem::remove(log);
    EXPECT_EQ(shortVariable(L"USERI2"), 3);
    EXPECT_EQ(boxes, std::vector<std::string>{});
}

TEST_F(SysvarDialog, NoRecordIsNoVariable)
{
    EXPECT_FALSE(CDlg_SysVariables::InitSysvarCurrentAndNewValByName(nullptr));
}

}
