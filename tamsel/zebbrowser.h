#pragma once

#include <QList>
#include <QWidget>

class BodyIndexField;
class QCheckBox;
class QGroupBox;
class QLineEdit;
class QMFileLineEdit;
class QMListDialog;
class QMenu;
class QPushButton;
class QTabWidget;
class QTreeWidget;
class QVBoxLayout;
class ZEBReport;

// The tab "ZEB Browser": picks blocks of a ZEB file or of a database body,
// and either shows them on the pages of a browser window or writes them as
// time-stamped report files and lists their names.
class ZEBBrowser : public QWidget
{
    Q_OBJECT

public:
    // Blocks are chosen by key (0 to 27: the order on screen); the tool
    // knows them by block number.
    static constexpr int blockCount = 28;
    static constexpr int boxCount = 20;
    static QString blockName(int key);
    static int blockNumber(int key);
    // What a run is making, for the user to see: "Block 3 of 7: Mode
    // Shapes", done blocks before it of total; block 0 is the whole file.
    static QString stepText(int block, int done, int total);

    ZEBBrowser(QWidget* parent, const char* name);
    ~ZEBBrowser() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void startGenBrowse(bool browse);
    void startGenReport(bool browse);

public slots:
    void generate(bool browse);
    void selected();
    void proxyBrowse();
    void proxyReport();

private slots:
    void clearBlockBoxes();
    void selectAllBlockBoxes();
    void checkCDB();
    void selectIndexFromCDB();

private:
    QLayout* createFileRow();
    QGroupBox* createBlockGroups();
    QGroupBox* createGroup(QWidget* parent, const char* title, int firstKey, int lastKey);
    void createInvariantList(QGroupBox* group);
    void setAllBlocks(bool on);
    void selectDefaultBlocks();
    bool isSelected(int key) const;
    QList<int> selectedKeys() const;
    void browseBlocks(ZEBReport& report, const QList<int>& keys);
    void listReports(ZEBReport& report, const QList<int>& keys);
    QWidget* createBrowserWindow(QTabWidget*& tabs);

    QTreeWidget* invariantList = nullptr;
    QPushButton* browseBtn = nullptr;
    QPushButton* reportBtn = nullptr;
    QCheckBox* blockBoxes[boxCount] = {};
    QMFileLineEdit* inputFile = nullptr;
    QMListDialog* reportList = nullptr;
    QLineEdit* indexLE = nullptr;
    QMenu* indexMenu = nullptr;
    BodyIndexField* bodyIndex = nullptr;
};
