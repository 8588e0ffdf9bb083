// SYSVDLG with a catalogue of ever more entries: seconds, and how they grow from one count to the next. A growth of the
// time that is far above that of the count is a fault. The first count is the catalogue as it is shipped, with every
// variable.
//
// usage: system_variables_bench [MOST]    counts go up to MOST, 100000 without it

#include "bench/support.h"
#include "host/app/session.h"
#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/edit/services.h"
#include "host/edit/sysvar_table.h"
#include "sdk/vchost.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using vk::edit::Editor;
using Steps = std::vector<std::string>;

// The host's own files lie in a folder of the benchmark's, with a catalogue that repeats the entries of the shipped
// one.
class Catalogue : public VcDbHostApplicationServices {
public:
    Catalogue() : m_shipped(readWholeFile(joinPath(hostFolder(), "Support/SYSVDLG.DAT")).value_or(""))
    {
        std::filesystem::create_directories(m_folder + "Support");
        vcdbSetHostApplicationServices(this);
    }
    ~Catalogue() override { vcdbSetHostApplicationServices(m_host); }

    void write(int copies) const
    {
        std::ofstream file(m_folder + "Support/SYSVDLG.DAT", std::ios::binary);
        while (copies-- > 0)
            file << m_shipped;
    }

    VcDbDatabase* workingDatabase() const override { return m_host->workingDatabase(); }
    void setWorkingDatabase(VcDbDatabase* database) override { m_host->setWorkingDatabase(database); }
    const wchar_t* getMachineRegistryProductRootKey() const override
    {
        return m_host->getMachineRegistryProductRootKey();
    }
    const wchar_t* getUserRegistryProductRootKey() const override { return m_host->getUserRegistryProductRootKey(); }
    const wchar_t* getInstallFolder() const override { return m_wide.c_str(); }

private:
    VcDbHostApplicationServices* m_host = vcdbHostApplicationServices();
    std::string m_shipped;
    std::string m_folder = joinPath(temporaryFolder(), "sysvdlg/");
    std::wstring m_wide = utf8ToWide(m_folder);
};

std::string filterPath() { return joinPath(temporaryFolder(), "all.svf"); }

// A dialog that takes these steps, and the lines that answer the questions it leads to.
void open(const Steps& steps, const std::string& typed = {})
{
    Editor& editor = Editor::instance();
    editor.dialogs()->addAnswer("DlgSysDialog", steps);
    editor.pushSource(std::make_unique<vk::edit::ScriptSource>("bench", "SYSVDLG\n" + typed));
    editor.run();
}

void read()
{
    Editor::instance().dialogs()->addAnswer("MessageBox", {"OK"});
    open({"pBtnRead", "pBtnCancel"}, filterPath() + "\n");
}

struct Row {
    const char* what;
    void (*work)();
    double before = 0;

    void print(int count, double seconds)
    {
        std::printf("SYSVDLG, %-9s %7d  %7.3f s", what, count, seconds);
        if (before > 0)
            std::printf("  x %.2f", seconds / before);
        std::printf("\n");
        before = seconds;
    }
};

void measure(const Catalogue& catalogue, int most)
{
    const int variables = int(vk::edit::sysVarTable().size());
    Row rows[] = {{"opening", [] { open({"pBtnCancel"}); }},
                  {"searching",
                   [] {
                       open({"lEditSearch=D", "pBtnCancel"});
                   }},
                  {"saving",
                   [] {
                       open({"pBtnSaveFilter", "pBtnCancel"}, filterPath() + "\n");
                   }},
                  {"reading", read}};
    for (int copies = 1; copies * variables <= most; copies *= 2) {
        catalogue.write(copies);
        for (Row& row : rows)
            row.print(copies * variables, bench::bestOf(bench::kRuns, row.work));
        std::fflush(stdout);
    }
}

}

int main(int argc, char** argv)
{
    const int most = argc > 1 ? std::atoi(argv[1]) : 100000;
    vk::app::Session session(joinPath(temporaryFolder(), "profile"));
    for (const std::string& fault : session.open(std::make_unique<VcDbDatabase>()))
        std::fprintf(stderr, "%s\n", fault.c_str());
    Editor::instance().setTranscriptSink([](std::string_view) {});
    const Catalogue catalogue;
    open({"pBtnCancel"});  // the first dialog pays for what all need
    measure(catalogue, most);
}
