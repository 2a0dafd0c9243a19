// A program like any other that takes files: it shows a window and inserts what is on the clipboard
// when Ctrl+V is pressed in it. What arrived is told on standard output, line by line:
//
//   ready            the window is on the screen and has the keyboard
//   pasted: N        a paste took place; N file paths follow, one a line
//   text: ...        instead, where the clipboard holds text and no files (line feeds as \n)

#include <QApplication>
#include <QClipboard>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QUrl>
#include <QVBoxLayout>

#include <cstdio>
#include <utility>

namespace {

constexpr QSize thumbnailSize{208, 132};

void say(const QString& line)
{
    std::fprintf(stdout, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stdout);
}

QIcon thumbnail(const QString& path)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize fitted = reader.size().scaled(thumbnailSize, Qt::KeepAspectRatio);
    return QIcon(QPixmap::fromImage(
        reader.read().scaled(fitted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
}

class PasteTarget : public QWidget {
public:
    PasteTarget()
        : headline(new QLabel("Nothing pasted yet. Press Ctrl+V."))
        , items(new QListWidget)
    {
        setWindowTitle("Paste target");
        setMinimumSize(760, 300);
        setFocusPolicy(Qt::StrongFocus);
        setStyleSheet(
            "PasteTarget { background: #f6f6f8 }"
            "QLabel { color: #2a2b31; font-size: 15px; font-weight: 600 }"
            "QListWidget { background: #ffffff; border: 1px solid #d9dae0; border-radius: 8px;"
            "  color: #3c3e47; font-size: 11px; padding: 8px }");
        items->setViewMode(QListView::IconMode);
        items->setIconSize(thumbnailSize);
        items->setGridSize({230, 182});
        items->setResizeMode(QListView::Adjust);
        items->setWordWrap(true);
        items->setFocusPolicy(Qt::NoFocus);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(18, 16, 18, 18);
        column->setSpacing(12);
        column->addWidget(headline);
        column->addWidget(items);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Paste) && !event->isAutoRepeat())
            paste();
    }

    void focusInEvent(QFocusEvent*) override
    {
        if (!std::exchange(saidReady, true))
            say("ready");
    }

private:
    void paste()
    {
        const QMimeData* content = QApplication::clipboard()->mimeData();
        const QList<QUrl> urls = content ? content->urls() : QList<QUrl>();
        items->clear();
        say(QString("pasted: %1").arg(urls.size()));
        for (const QUrl& url : urls)
            insertFile(url.toLocalFile());
        headline->setText(QString("%1 file(s) pasted").arg(urls.size()));
        if (const QString text = content ? content->text() : QString();
            urls.isEmpty() && !text.isEmpty())
            insertText(text);
    }

    void insertFile(const QString& path)
    {
        say(path);
        auto* item = new QListWidgetItem(thumbnail(path), path.section('/', -1), items);
        item->setTextAlignment(Qt::AlignHCenter);
    }

    void insertText(const QString& text)
    {
        say("text: " + QString(text).replace('\n', "\\n"));
        headline->setText("Text pasted");
        items->addItem(text);
    }

    QLabel* headline;
    QListWidget* items;
    bool saidReady = false;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    PasteTarget target;
    target.show();
    target.activateWindow();
    return application.exec();
}
