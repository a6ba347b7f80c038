#pragma once

#include <QLineEdit>
#include <QStringList>

#include <functional>
#include <string>

class QFileDialog;
class QMenu;

// The file name field of every form: a line edit whose chooser hangs on the
// mouse. A double click on the empty field, or the entry of the right-button
// menu, opens the chooser; the choice is written with its directory in the
// platform's short path form.
class QMFileLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    enum Mode { DirMode = 0, FileMode = 1, MultiFileMode = 2, PlainMode = 3 };

    QMFileLineEdit(QWidget* parent, const char* name, int mode);
    ~QMFileLineEdit() override;

    QStringList filters;
    QString filter;
    QString dialogCaption;

    // Shared by the file choosers of all fields: where the last one ended.
    static QString lastDir;

    // How a short path is had; tests put a Windows-like answer here.
    static std::function<std::string(const std::string&)> shortPathName;

public slots:
    void startDirBrowser();
    void startFileBrowser();
    void startMFileBrowser();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void applyFilters(QFileDialog& dialog);
    void startChooser();
    static QString shortened(const QString& path);
    static QString startDir();

    int mode;
    QMenu* menu = nullptr;
};
