#include "access/frm_user_access_level.h"

#include "access/frm_login.h"
#include "access/login.h"
#include "driver/cls_main.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int kPasswordFile = 16;
constexpr int kTextBlock = 5; // FormatData: a block of groups
constexpr int kCharacters = 6; // ... of characters

FileRequest passwordRequest(int access, int count)
{
    FileRequest request;
    request.access = access;
    request.file = kPasswordFile;
    request.offset = 0;
    request.count = count;
    request.usePec = true;
    return request;
}

} // namespace

frmUserAccessLevel::frmUserAccessLevel(UserAccess& access)
    : Window("frmUserAccessLevel")
    , access_(access)
{
    setCaption("Zentavia - User Access Level Password List");
    Label1.setCaption("User Access Level");
    btnOk.setCaption("OK");
    btnCancel.setCaption("Cancel");
    addControls({ &Label1, &cmbAccessLevel, &btnOk, &btnCancel });
    for (int i = 0; i < kPasswordRows; ++i) {
        lvlLevel[i].setCaption("Level " + std::to_string(i + 1));
        cmdEdit[i].setCaption("Edit");
        limitToPasswordLength(txtPassword[i]);
        cmdEdit[i].onClick = [this, i] { cmdEdit_Click(i); };
        addControls({ &lvlLevel[i], &txtPassword[i], &cmdEdit[i] });
    }
    btnOk.onClick = [this] { btnOk_Click(); };
    btnCancel.onClick = [this] { unload(); };
}

int frmUserAccessLevel::rowCount() const
{
    return std::clamp(access_.services().main.UserAccessLevel(), 0, kPasswordRows);
}

void frmUserAccessLevel::handleLoad()
{
    showRows(0);
    const int count = rowCount();
    if (count == 0)
        return;
    auto& driver = access_.services().main.CellWeft();
    const FileReply reply = driver.FileAccessRequest(passwordRequest(0, count));
    if (!reply.ok) {
        btnOk.setEnabled(false);
        access_.services().dialogs.messageBox(
            "Cannot read device", platform::Buttons::OK, platform::Icon::Critical, "Error");
        return;
    }
    const auto* entry = driver.Directory.DirectoryElements.fileEntry(kPasswordFile);
    const int chunk = entry ? static_cast<int>(entry->FileChunk) : 0;
    const NumberLocale& locale = driver.Conversion.locale();
    for (int i = 0; i < count; ++i) {
        const DynamicValue text
            = driver.Conversion.FormatData(reply.text, kTextBlock, i, kCharacters, 0, chunk);
        txtPassword[i].setText(text.toText(locale));
    }
    showRows(count);
}

void frmUserAccessLevel::handleUnload()
{
    for (auto& box : txtPassword)
        box.setText({});
    btnOk.setEnabled(true);
}

void frmUserAccessLevel::showRows(int count)
{
    for (int i = 0; i < kPasswordRows; ++i) {
        const bool shown = i < count;
        lvlLevel[i].setVisible(shown);
        txtPassword[i].setVisible(shown);
        txtPassword[i].setEnabled(false);
        cmdEdit[i].setVisible(shown);
    }
}

void frmUserAccessLevel::cmdEdit_Click(int row)
{
    for (int i = 0; i < kPasswordRows; ++i)
        txtPassword[i].setEnabled(i == row);
}

void frmUserAccessLevel::btnOk_Click()
{
    const int count = rowCount();
    if (count == 0)
        return;
    MainWindowAccess& mainWindow = access_.mainWindow();
    if (mainWindow.SetMousePointer)
        mainWindow.SetMousePointer(11);
    FileRequest request = passwordRequest(1, count);
    request.data.assign(static_cast<std::size_t>(count) * kPasswordLength, 0);
    for (int i = 0; i < count; ++i) {
        const PasswordBytes bytes = passwordBytes(txtPassword[i].text());
        std::copy(bytes.begin(), bytes.end(), request.data.begin() + i * kPasswordLength);
    }
    (void)access_.services().main.CellWeft().FileAccessRequest(request);
    if (mainWindow.SetMousePointer)
        mainWindow.SetMousePointer(0);
    hide();
    access_.GetUserLevelFromHardware();
    unload();
}

} // namespace zv
