// The application object of the class library, and what there is of a frame.

#include "host/base/settings.h"
#include "host/base/unicode.h"
#include "host/ui/icons.h"
#include "host/ui/qt_application.h"
#include "sdk/vced.h"
#include "sdk/vcui.h"
#include "sdk/vcut.h"

#include <QMainWindow>

namespace {

std::string keyOf(const wchar_t* section)
{
    resbuf profile = {};
    if (vcedGetVar(L"CPROFILE", &profile) != RTNORM)
        return {};
    const std::string key = profileGroupKey(wideToUtf8(profile.resval.rstring), wideToUtf8(section));
    vcad_free(profile.resval.rstring);
    return key;
}

std::optional<SettingValue> read(const wchar_t* section, const wchar_t* key)
{
    const std::string path = keyOf(section);
    return path.empty() ? std::nullopt : userSettings().read(path, wideToUtf8(key));
}

bool write(const wchar_t* section, const wchar_t* key, const SettingValue& value)
{
    const std::string path = keyOf(section);
    return !path.empty() && userSettings().write(path, wideToUtf8(key), value);
}

CWnd& standsFor(CWnd& window, QWidget* widget)
{
    if (window.Widget() != widget)
        window.SetHandle(widget);
    return window;
}

}

CWinApp::~CWinApp() = default;

UINT CWinApp::GetProfileInt(const wchar_t* section, const wchar_t* key, int byDefault)
{
    const auto value = read(section, key);
    return value && value->kind == SettingValue::Kind::Number ? UINT(value->number) : UINT(byDefault);
}

bool CWinApp::WriteProfileInt(const wchar_t* section, const wchar_t* key, int value)
{
    return write(section, key, SettingValue::ofNumber(std::uint32_t(value)));
}

CStdStrW CWinApp::GetProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* byDefault)
{
    const auto value = read(section, key);
    return value && value->kind == SettingValue::Kind::Text ? CStdStrW(utf8ToWide(value->text)) : CStdStrW(byDefault);
}

bool CWinApp::WriteProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* value)
{
    return write(section, key, SettingValue::ofText(wideToUtf8(value ? value : L"")));
}

HICON CWinApp::LoadIcon(UINT) const
{
    vk::ui::ensureApplication();
    return vk::ui::programIcon();
}

CWinApp* AfxGetApp()
{
    static CWinApp application;
    return &application;
}

CWinApp* vcedGetVkadWinApp() { return AfxGetApp(); }

CWnd* vcedGetVkadFrame()
{
    static CWnd frame;
    return &standsFor(frame, vk::ui::mainWindow());
}

CWnd* vcedGetVkadDwgView()
{
    static CWnd view;
    const auto* window = qobject_cast<QMainWindow*>(vk::ui::mainWindow());
    return &standsFor(view, window ? window->centralWidget() : nullptr);
}

VkMainAppService* vekadMainAppService() { return nullptr; }
