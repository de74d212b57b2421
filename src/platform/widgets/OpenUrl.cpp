#include "platform/widgets/OpenUrl.h"

#include "platform/BrowserLookup.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

namespace cq {

void OpenURLInBrowser(const QString& address, QWidget* owner) {
    if (address.isEmpty())
        return;
    if (FindWebBrowserHandler().isEmpty()) {
        QMessageBox::warning(owner, QStringLiteral("Browser Not Found"),
                             QStringLiteral("Could not find associated Browser"));
        return;
    }
    if (!QDesktopServices::openUrl(QUrl(address)))
        QMessageBox::warning(owner, QStringLiteral("URL Failed"),
                             QStringLiteral("Web Page not Opened"));
}

} // namespace cq
