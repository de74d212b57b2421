#pragma once

#include "studio/AppPaths.h"

#include <QWidget>
#include <functional>

class QPushButton;

namespace cq {

struct DirectorySettings;

// The main window's buttons that take the rendered clip out of the studio: mail, convert, save
// a copy, FTP, and the support page.
class SharePanel : public QWidget {
    Q_OBJECT
public:
    SharePanel(const AppPaths& paths, DirectorySettings& settings, QWidget* parent = nullptr);

    // How many events the grid holds (without its heading row). Without a provider, a missing
    // rendered video counts as a voice-only recording.
    void setEventCountProvider(std::function<int()> provider);

    QString chosenFolder() const { return m_chosenFolder; }

    void cmdEmail_Click();
    void cmdConvert_Click();
    void cmdSaveToDir_Click();
    void cmdFTP_Click();
    void cmdSupport_Click();

private:
    bool writeFtpStartFolder();
    void startFtpProgram();
    QPushButton* addButton(const char* objectName, const QString& caption, const QString& tip);
    void saveRenderedFileTo(const QString& source);
    void tell(const QString& text, const QString& detail = QString());
    // The rendered video, or the mixed sound of a recording without events.
    QString clipToMail() const;
    void handOverToEmailer(const QString& attachment);

    AppPaths m_paths;
    DirectorySettings& m_settings;
    std::function<int()> m_eventCount;
    QString m_chosenFolder;
};

} // namespace cq
