#include "mainwindow/frmBrowser.h"

#include "common/MMain.h"
#include "files/ansi.h"
#include "files/stored_path.h"
#include "windows/captions.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QNetworkReply>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How often the caption is looked after while a page is loading, in milliseconds.
constexpr int captionInterval = 100;
/// The largest page that is shown, in bytes.
constexpr qint64 largestPage = 16 << 20;

/// How long a size must have lasted until the pictures are fitted to it, in milliseconds.
constexpr int fittingDelay = 60;

/// The addresses of all pictures in the text.
QSet<QString> picturesOf(const QTextDocument& text)
{
    QSet<QString> names;
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next())
        for (auto piece = block.begin(); !piece.atEnd(); ++piece)
            if (const QTextCharFormat format = piece.fragment().charFormat(); format.isImageFormat())
                names << format.toImageFormat().name();
    return names;
}

/// Pictures come from files beside the page; nothing else is fetched for it. One that is wider than the page
/// is shown smaller, so that the page need not be moved sideways.
class Page : public QTextBrowser {
public:
    Page()
    {
        m_fitting.setSingleShot(true);
        m_fitting.setInterval(fittingDelay);
        connect(&m_fitting, &QTimer::timeout, this, [this] { fitPictures(); });
    }

    QVariant loadResource(int type, const QUrl& name) override
    {
        const QUrl address = document()->baseUrl().resolved(name);
        if (type != QTextDocument::ImageResource || !address.isLocalFile())
            return {};
        QImage picture(address.toLocalFile());
        const int width = lineWidth();
        if (picture.width() <= width)
            return picture.isNull() ? QVariant() : picture;
        // As many pixels as the screen shows.
        const int pixels = std::min(picture.width(), qRound(width * devicePixelRatioF()));
        picture = picture.scaledToWidth(pixels, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(qreal(pixels) / width);
        return picture;
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QTextBrowser::resizeEvent(event);
        if (event->size().width() != event->oldSize().width())
            m_fitting.start();
    }

    /// Leaves the keys of the history, which it would use for one of its own, to the window.
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Back) || event->matches(QKeySequence::Forward))
            event->ignore();
        else
            QTextBrowser::keyPressEvent(event);
    }

private:
    /// What a line of the text has room for. The vertical scrollbar's room is kept free, so that its coming
    /// and going changes nothing.
    int lineWidth() const
    {
        const int bar = verticalScrollBar()->isVisible() ? 0 : verticalScrollBar()->sizeHint().width();
        return std::max(1, viewport()->width() - bar - qCeil(2 * document()->documentMargin()));
    }

    void fitPictures()
    {
        const QSet<QString> pictures = picturesOf(*document());
        for (const QString& name : pictures)
            document()->addResource(QTextDocument::ImageResource, document()->baseUrl().resolved(name),
                                    loadResource(QTextDocument::ImageResource, name));
        if (!pictures.isEmpty())
            document()->markContentsDirty(0, document()->characterCount());
    }

    QTimer m_fitting;
};

} // namespace

QString manualAddress(QString programFolder)
{
    programFolder.replace(u'\\', u'/');
    QString address = "file://"_L1 + programFolder + "/manual.htm"_L1;
    return address.replace("////"_L1, "//"_L1);
}

frmBrowser::frmBrowser(MMain& main)
    : m_main(main),
      m_addresses(new QComboBox),
      m_page(new Page),
      m_caption(u"Manual"_s),
      m_errorText(main.textOr(u"FRMBROWSER_ERROR"_s, u"This page can't be shown"_s))
{
    setObjectName(u"frmBrowser"_s);
    setWindowTitle(m_caption);
    m_addresses->setObjectName(u"cboAddress"_s);
    m_addresses->setEditable(true);
    m_addresses->setInsertPolicy(QComboBox::NoInsert);
    m_addresses->setCompleter(nullptr); // it would put a listed address in place of the one that is typed
    m_addresses->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_page->setObjectName(u"brwWebBrowser"_s);
    m_page->setOpenLinks(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createAddressRow());
    layout->addWidget(m_page, 1);
    translateCaptions(m_main, *this);
    m_caption = windowTitle();
    m_page->setAccessibleName(m_caption);
    m_timer.setInterval(captionInterval);
    connect(&m_timer, &QTimer::timeout, this, &frmBrowser::showCaption);
    connect(m_page, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { go(m_shown.resolved(link)); });
    connect(m_addresses, &QComboBox::activated, this, [this] { navigate(m_addresses->currentText()); });
    connect(m_addresses->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        navigate(m_addresses->currentText());
        m_page->setFocus();
    });
}

QWidget* frmBrowser::createAddressRow()
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_back = button(u"Back"_s, u"Back"_s, Qt::LeftArrow);
    m_forward = button(u"Forward"_s, u"Forward"_s, Qt::RightArrow);
    QToolButton* outside = button(u"Outside"_s, u"Open in the Browser"_s, Qt::NoArrow);
    outside->setEnabled(true);
    layout->addWidget(m_back);
    layout->addWidget(m_forward);
    layout->addWidget(m_addresses, 1);
    layout->addWidget(outside);
    connect(m_back, &QToolButton::clicked, this, &frmBrowser::goBack);
    connect(m_forward, &QToolButton::clicked, this, &frmBrowser::goForward);
    connect(outside, &QToolButton::clicked, this, [this] { QDesktopServices::openUrl(m_current); });
    return row;
}

QToolButton* frmBrowser::button(const QString& name, const QString& text, Qt::ArrowType arrow)
{
    auto* made = new QToolButton;
    made->setObjectName(name);
    made->setText(text);
    made->setArrowType(arrow);
    made->setFocusPolicy(Qt::TabFocus);
    made->setEnabled(false);
    return made;
}

void frmBrowser::navigate(const QString& address)
{
    // A file's name is taken as it stands, whatever would have a meaning in an address.
    constexpr auto file = "file://"_L1;
    const QString path = address.startsWith(file) ? address.sliced(file.size()) : QString();
    if (QFileInfo(path).isAbsolute() && QFile::exists(path)) {
        go(QUrl::fromLocalFile(path));
        return;
    }
    const QUrl url = QUrl::fromUserInput(address, m_main.programFolder);
    if (url.isValid())
        go(url);
    else
        showErrorPage(QUrl(), address);
}

void frmBrowser::showManual(const QString& chapter)
{
    const QString page = pathIn(m_main.programFolder, "manual/"_L1 + m_main.language.toLower() + ".htm"_L1);
    if (chapter.isEmpty() || !QFile::exists(page)) {
        navigate(manualAddress(m_main.programFolder));
    } else {
        QUrl address = QUrl::fromLocalFile(page);
        address.setFragment(chapter);
        go(address);
    }
    m_page->setFocus();
}

void frmBrowser::go(const QUrl& address)
{
    if (m_reply && address == m_current)
        return; // on its way
    if (!m_shown.isEmpty() && address != m_shown)
        m_before << m_shown;
    m_after.clear();
    load(address);
}

void frmBrowser::goBack()
{
    if (m_before.isEmpty())
        return;
    if (!m_shown.isEmpty())
        m_after << m_shown;
    load(m_before.takeLast());
}

void frmBrowser::goForward()
{
    if (m_after.isEmpty())
        return;
    if (!m_shown.isEmpty())
        m_before << m_shown;
    load(m_after.takeLast());
}

void frmBrowser::load(const QUrl& address)
{
    if (m_reply)
        std::exchange(m_reply, nullptr)->abort();
    const bool samePage = address.hasFragment() && address.matches(m_shown, QUrl::RemoveFragment);
    m_current = address;
    if (samePage) {
        m_shown = address;
        m_page->scrollToAnchor(address.fragment());
        arrived(address);
        return;
    }
    m_timer.start();
    QNetworkReply* reply = m_network.get(QNetworkRequest(address));
    m_reply = reply;
    connect(reply, &QNetworkReply::downloadProgress, this, [this, reply](qint64 received) {
        if (reply == m_reply && received > largestPage) {
            std::exchange(m_reply, nullptr)->abort();
            showErrorPage(m_current, u"> %1 MB"_s.arg(largestPage >> 20));
        }
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        if (reply == m_reply)
            loaded(*reply);
    });
}

void frmBrowser::loaded(QNetworkReply& reply)
{
    m_reply = nullptr;
    // A redirection ends somewhere else.
    QUrl address = reply.url();
    address.setFragment(m_current.fragment());
    m_current = address;
    const QString type = reply.header(QNetworkRequest::ContentTypeHeader).toString();
    if (reply.error() == QNetworkReply::NoError)
        showPage(address, reply.readAll(), !type.startsWith("text/plain"_L1));
    else
        showErrorPage(address, reply.errorString());
}

void frmBrowser::showPage(const QUrl& address, const QByteArray& content, bool html)
{
    m_shown = address;
    m_page->document()->setBaseUrl(address);
    if (html)
        m_page->setHtml(decodeText(content));
    else
        m_page->setPlainText(decodeText(content));
    const QString title = m_page->documentTitle();
    // Never nothing: the frame around this window would keep the caption of the page before.
    const QString name = address.fileName().isEmpty() ? address.toDisplayString() : address.fileName();
    m_caption = title.isEmpty() ? name : title;
    if (address.hasFragment())
        m_page->scrollToAnchor(address.fragment());
    arrived(address);
}

void frmBrowser::showErrorPage(const QUrl& address, const QString& reason)
{
    m_shown = QUrl();
    m_page->setHtml("<h2>%1</h2><p>%2</p><p>%3</p>"_L1.arg(
        m_errorText, address.toDisplayString().toHtmlEscaped(), reason.toHtmlEscaped()));
    m_caption = m_errorText;
    arrived(address);
}

void frmBrowser::arrived(const QUrl& address)
{
    const QString text = address.toDisplayString();
    if (!text.isEmpty() && m_addresses->findText(text) < 0)
        m_addresses->addItem(text);
    m_addresses->setCurrentIndex(m_addresses->findText(text));
    m_back->setEnabled(!m_before.isEmpty());
    m_forward->setEnabled(!m_after.isEmpty());
    showCaption();
}

void frmBrowser::showCaption()
{
    if (m_reply) {
        setWindowTitle(u"Traitement en cours..."_s);
        return;
    }
    setWindowTitle(m_caption);
    m_timer.stop();
}

void frmBrowser::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Back))
        goBack();
    else if (event->matches(QKeySequence::Forward))
        goForward();
    else if (event->key() == Qt::Key_Escape)
        (parentWidget() ? parentWidget() : this)->close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace velmora
