// Asking for a file: in a window, or at the command line when FILEDIA is 0.

#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/ui/modal.h"
#include "host/ui/qt_application.h"
#include "host/ui/widget_text.h"
#include "sdk/vcui.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>
#include <algorithm>

using vk::ui::fromUtf8;
using vk::ui::fromWide;

namespace {

struct FileRequest {
    QString title;
    QString preset;
    QString filters;    // as Qt has them: "Name (*.a *.b);;Name (*)"
    QString extension;  // put behind a name that has none
    bool forOpening = true;
    bool mustExist = false;
    bool asksBeforeReplacing = false;
};

class FileDialog : public QFileDialog {
public:
    explicit FileDialog(const FileRequest& request) : QFileDialog(vk::ui::mainWindow()), m_request(request)
    {
        setObjectName("FileDialog");
        setOption(DontUseNativeDialog);
        setOption(DontConfirmOverwrite);
        setFileMode(AnyFile);
        setAcceptMode(request.forOpening ? AcceptOpen : AcceptSave);
        setWindowTitle(request.title);
        setNameFilters(request.filters.split(";;", Qt::SkipEmptyParts));
        setDefaultSuffix(request.extension);
        start(QFileInfo(request.preset));
        nameButtons();
    }

    void accept() override
    {
        if (isGoodChoice())
            QFileDialog::accept();
    }

    // The toolkit takes a point in the name of a folder for an ending.
    QString chosen() const
    {
        const QString path = selectedFiles().value(0);
        const bool lacksEnding =
            !path.isEmpty() && !QFileInfo(path).isDir() && !QFileInfo(path).fileName().contains('.');
        return lacksEnding && !m_request.extension.isEmpty() ? path + "." + m_request.extension : path;
    }

private:
    void start(const QFileInfo& preset)
    {
        if (!preset.path().isEmpty() && preset.path() != ".")
            setDirectory(preset.path());
        selectFile(preset.fileName());
    }

    void nameButtons()
    {
        const auto* box = findChild<QDialogButtonBox*>();
        for (QAbstractButton* button : box ? box->buttons() : QList<QAbstractButton*>())
            button->setObjectName(box->buttonRole(button) == QDialogButtonBox::AcceptRole ? "pBtnOK" : "pBtnCancel");
    }

    bool isGoodChoice()
    {
        const QString path = chosen();
        if (path.isEmpty() || QFileInfo(path).isDir())
            return true;
        if (m_request.mustExist && !QFileInfo::exists(path)) {
            ::MessageBoxW(nullptr, (path + "\nThis file does not exist.").toStdWString().c_str(),
                          m_request.title.toStdWString().c_str(), MB_ICONEXCLAMATION);
            return false;
        }
        return !m_request.asksBeforeReplacing || !QFileInfo::exists(path) ||
               ::MessageBoxW(nullptr, (path + "\nThis file exists. Replace it?").toStdWString().c_str(),
                             m_request.title.toStdWString().c_str(), MB_YESNO | MB_ICONWARNING) == IDYES;
    }

    FileRequest m_request;
};

// The path as typed, but for quotes around it; Enter takes the preset.
std::optional<std::string> askAtCommandLine(const FileRequest& request)
{
    vk::edit::Question question;
    question.kind = vk::edit::Question::Kind::Text;
    const std::string preset = request.preset.toStdString();
    question.prompt =
        fmt::format("\n{}{}: ", request.title.toStdString(), preset.empty() ? "" : fmt::format(" <{}>", preset));
    const vk::edit::Answer answer = vk::edit::Editor::instance().askFromModule(question);
    using Status = vk::edit::Answer::Status;
    if (answer.status != Status::Value && answer.status != Status::Enter && answer.status != Status::Arbitrary)
        return std::nullopt;
    std::string path = answer.text;
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"')
        path = path.substr(1, path.size() - 2);
    if (path.empty())
        path = preset;
    return path.empty() ? std::nullopt : std::optional(path);
}

std::optional<std::string> askInWindow(const FileRequest& request)
{
    vk::ui::ensureApplication();
    FileDialog dialog(request);
    if (vk::ui::runModal(dialog) != QDialog::Accepted)
        return std::nullopt;
    const QString path = dialog.chosen();
    return path.isEmpty() ? std::nullopt : std::optional(path.toStdString());
}

std::optional<std::string> askForFile(const FileRequest& request)
{
    const bool inWindow = vk::edit::Editor::instance().vars().integer("FILEDIA") != 0;
    return inWindow ? askInWindow(request) : askAtCommandLine(request);
}

// "Text files(*.txt)|*.txt|All|*.*||" and the like. What *.* means are files without an ending as well.
QString filtersFromPairs(const QString& pairs)
{
    const QStringList parts = pairs.split('|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        const QString name = parts[i].section('(', 0, 0).trimmed();
        QStringList patterns = parts[i + 1].split(';', Qt::SkipEmptyParts);
        std::replace(patterns.begin(), patterns.end(), QString("*.*"), QString("*"));
        filters << name + " (" + patterns.join(' ') + ")";
    }
    return filters.join(";;");
}

QString filtersFromExtensions(const QString& extensions)
{
    QStringList filters;
    for (const QString& extension : extensions.split(';', Qt::SkipEmptyParts))
        filters << QString("%1 (*.%2)").arg(extension.toUpper(), extension);
    return filters.join(";;");
}

// "txt", ".txt" and "*.txt" mean the same.
QString bareExtension(const QString& extension) { return extension.section('.', -1); }

}

CFileDialog::CFileDialog(bool forOpening, const wchar_t* defaultExtension, const wchar_t* fileName, DWORD flags,
                         const wchar_t* filter, CWnd* parent)
    : CDialog(0, parent), m_forOpening(forOpening), m_flags(flags), m_extension(defaultExtension), m_filter(filter),
      m_path(fileName)
{
}

CFileDialog::~CFileDialog() = default;

int CFileDialog::DoModal()
{
    FileRequest request;
    request.title = m_forOpening ? "Open file" : "Save file as";
    request.preset = fromWide(m_path);
    request.filters = filtersFromPairs(fromWide(m_filter));
    request.extension = bareExtension(fromWide(m_extension));
    request.forOpening = m_forOpening;
    request.mustExist = m_forOpening && (m_flags & OFN_FILEMUSTEXIST);
    request.asksBeforeReplacing = !m_forOpening && (m_flags & OFN_OVERWRITEPROMPT);
    const std::optional<std::string> path = askForFile(request);
    if (!path)
        return IDCANCEL;
    m_path = utf8ToWide(*path);
    return IDOK;
}

CStdStrW CFileDialog::GetFileName() const { return QFileInfo(fromWide(m_path)).fileName().toStdWString(); }

CStdStrW CFileDialog::GetFileExt() const { return QFileInfo(fromWide(m_path)).suffix().toStdWString(); }

int vcedGetFileNavDialog(const wchar_t* title, const wchar_t* preset, const wchar_t* extensions, int flags,
                         CStdStrW& pathOut)
{
    FileRequest request;
    request.title = fromWide(title);
    request.preset = fromWide(preset);
    request.filters = filtersFromExtensions(fromWide(extensions));
    request.extension = bareExtension(fromWide(extensions).section(';', 0, 0));
    request.forOpening = !(flags & kFileNavSave);
    request.mustExist = request.forOpening;
    request.asksBeforeReplacing = !request.forOpening;
    const std::optional<std::string> path = askForFile(request);
    if (!path)
        return RTCAN;
    pathOut = utf8ToWide(*path);
    return RTNORM;
}
