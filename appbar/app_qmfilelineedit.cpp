#include "app_qmfilelineedit.h"

#include "platform/shortpath.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMouseEvent>

QString QMFileLineEdit::lastDir;
std::function<std::string(const std::string&)> QMFileLineEdit::shortPathName =
    platform::shortPathName;

namespace
{

// Menu text of each mode that has a chooser; PlainMode has none.
const char* const menuTexts[] = {"Select A Directory", "Select A File", "Select Files"};

bool hasChooser(int mode)
{
    return mode >= QMFileLineEdit::DirMode && mode < QMFileLineEdit::PlainMode;
}

// The right button opens the field's own menu or nothing, never the edit
// menu too; a menu asked for from the keyboard (Menu key, Shift+F10) is the
// line edit's own.
class MouseMenuBlocker : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject*, QEvent* event) override
    {
        return event->type() == QEvent::ContextMenu &&
               static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse;
    }
};

} // namespace

QMFileLineEdit::QMFileLineEdit(QWidget* parent, const char* name, int kind)
    : QLineEdit(parent), mode(kind)
{
    setObjectName(QString::fromLatin1(name));
    installEventFilter(new MouseMenuBlocker(this));
    if (!hasChooser(mode))
        return;
    menu = new QMenu;
    menu->setObjectName("FileLineEditMenu");
    menu->addAction(QString::fromLatin1(menuTexts[mode]), this, &QMFileLineEdit::startChooser);
}

QMFileLineEdit::~QMFileLineEdit()
{
    delete menu;
}

QString QMFileLineEdit::shortened(const QString& path)
{
    const std::string shortPath = shortPathName(path.toLocal8Bit().toStdString());
    return shortPath.empty() ? QString() : QString::fromLocal8Bit(shortPath.c_str());
}

void QMFileLineEdit::mousePressEvent(QMouseEvent* event)
{
    // Never handed on: a press neither moves the caret nor starts a selection.
    if (event->button() == Qt::RightButton && menu)
        menu->exec(QCursor::pos());
}

void QMFileLineEdit::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QLineEdit::mouseDoubleClickEvent(event);
        return;
    }
    if (text().isEmpty())
        startChooser();
}

void QMFileLineEdit::startChooser()
{
    switch (mode) {
    case DirMode:
        startDirBrowser();
        break;
    case FileMode:
        startFileBrowser();
        break;
    case MultiFileMode:
        startMFileBrowser();
        break;
    }
}

void QMFileLineEdit::applyFilters(QFileDialog& dialog)
{
    if (filters.isEmpty() && filter.isEmpty())
        return;
    if (filters.isEmpty())
        filters.append(filter);
    dialog.setNameFilters(filters);
}

// An empty lastDir means the working directory; Qt would otherwise pick
// the folder of whatever dialog it showed last.
QString QMFileLineEdit::startDir()
{
    return lastDir.isEmpty() ? QDir::currentPath() : lastDir;
}

void QMFileLineEdit::startDirBrowser()
{
    const QString current = QDir::currentPath();
    auto* dialog = new QFileDialog(this, QString(), QDir::homePath(), QString());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setWindowTitle("Select a Directory");
    dialog->setDirectory(current);
    if (dialog->exec() == QDialog::Accepted) {
        const QString chosen = dialog->selectedFiles().value(0);
        const QString shortForm = shortened(chosen);
        const QString newText = shortForm.isEmpty() ? chosen : shortForm;
        setText(newText);
        emit textChanged(newText);
    }
    delete dialog;
}

void QMFileLineEdit::startFileBrowser()
{
    QFileDialog dialog(this, QString(), startDir(), QString());
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setWindowTitle(dialogCaption);
    applyFilters(dialog);
    if (dialog.exec() != QDialog::Accepted)
        return;

    const QString chosen = dialog.selectedFiles().value(0);
    const QString dir = chosen.section('/', 0, -2);
    const QString name = chosen.section('/', -1, -1);
    // Only the directory is shortened: the file itself may not exist yet.
    const QString shortDir = shortened(dir);
    const QString newText = shortDir.isEmpty() ? chosen : shortDir + "/" + name;
    setText(newText);
    emit textChanged(newText);
    lastDir = dialog.directory().absolutePath();
}

void QMFileLineEdit::startMFileBrowser()
{
    QFileDialog dialog(this, QString(), startDir(), QString());
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setWindowTitle(dialogCaption);
    dialog.setViewMode(QFileDialog::Detail);
    applyFilters(dialog);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    const QStringList files = accepted ? dialog.selectedFiles() : QStringList();

    // A cancel empties the line too.
    setText(files.join(' '));
    emit textChanged(dialog.selectedFiles().value(0));
    lastDir = dialog.directory().absolutePath();
}
