// The manual browser.
#pragma once

#include <QComboBox>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

namespace velmora {

class MMain;

/// The address of the manual in the program folder.
QString manualAddress(QString programFolder);

/// Shows pages from files and web servers, as far as they are made of text, tables and pictures. A page is
/// fetched while window events run; one that can't be is an error page.
class frmBrowser : public QWidget {
    Q_OBJECT

public:
    explicit frmBrowser(MMain& main);

    /// Shows the page of an address as a user would type it.
    void navigate(const QString& address);

    /// Shows the manual of the program folder: its chapter of that name in the current language, else its
    /// first page.
    void showManual(const QString& chapter = {});

    QSize sizeHint() const override { return {820, 620}; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* createAddressRow();
    QToolButton* button(const QString& name, const QString& text, Qt::ArrowType arrow);
    void go(const QUrl& address);
    void goBack();
    void goForward();
    void load(const QUrl& address);
    void loaded(QNetworkReply& reply);
    void showPage(const QUrl& address, const QByteArray& content, bool html);
    void showErrorPage(const QUrl& address, const QString& reason);
    void arrived(const QUrl& address);
    void showCaption();

    MMain& m_main;
    QComboBox* m_addresses;
    QTextBrowser* m_page;
    QToolButton* m_back;
    QToolButton* m_forward;
    /// `timTimer`: shows the caption while a page is being loaded.
    QTimer m_timer;
    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply;
    /// What was asked for last, and what is shown: nothing while that is an error page.
    QUrl m_current;
    QUrl m_shown;
    QList<QUrl> m_before;
    QList<QUrl> m_after;
    QString m_caption;
    QString m_errorText;
};

} // namespace velmora
