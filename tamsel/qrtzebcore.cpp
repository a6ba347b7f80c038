#include "qrtzebcore.h"

#include "filerow.h"

#include "app_qmfilelineedit.h"
#include "messagebox.h"
#include "pictures.h"
#include "platform/environment.h"
#include "platform/filereplacement.h"
#include "platform/files.h"
#include "qmlistdialog.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTabBar>

#include <iostream>
#include <limits>

namespace
{

const char* const scriptFileName = "zebscript.dat";
const char* const unableToWrite = "Unable To Write";
const char* const unableText = "Unable to write zeb write options to current directory.  ";

// Point size 0: that of the application's default font.
QFont panelFont(int pointSize, QFont::Weight weight, bool italic)
{
    const QFont base = QApplication::font();
    return QFont(base.family(), pointSize > 0 ? pointSize : base.pointSize(), weight, italic);
}

QFont plainFont()
{
    return panelFont(10, QFont::Normal, false);
}
QFont valueFont()
{
    return panelFont(10, QFont::Bold, false);
}
QFont noteFont()
{
    return panelFont(10, QFont::Normal, true);
}
QFont headingFont()
{
    return panelFont(0, QFont::Bold, false);
}

template <class W> W* fixedToHint(W* widget)
{
    widget->setFixedSize(widget->sizeHint());
    return widget;
}

QLabel* label(const QString& text, QWidget* parent, const QFont* font = nullptr,
              const QString& tip = QString())
{
    auto* l = new QLabel(text, parent);
    if (font)
        l->setFont(*font);
    if (!tip.isEmpty())
        l->setToolTip(tip);
    return fixedToHint(l);
}

QComboBox* comboBox(const char* name, const QStringList& items, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(false);
    box->addItems(items);
    return fixedToHint(box);
}

QCheckBox* checkBox(const QString& text, QWidget* parent, const QFont& font, bool checked)
{
    auto* box = new QCheckBox(text, parent);
    box->setFont(font);
    box->setChecked(checked);
    return box;
}

QSlider* percentSlider(const char* name, QWidget* parent)
{
    auto* slider = new QSlider(Qt::Horizontal, parent);
    slider->setObjectName(name);
    slider->setRange(0, 30);
    slider->setPageStep(1);
    slider->setValue(15);
    slider->setTickPosition(QSlider::NoTicks);
    slider->setFixedSize(100, 20);
    return slider;
}

QBoxLayout* boxLayout(QBoxLayout::Direction direction, QWidget* parent, int margin, int spacing)
{
    auto* layout = new QBoxLayout(direction, parent);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
    return layout;
}

// The word of a combo box whose current text is one of the listed ones.
QString wordFor(const QComboBox* box, const QList<QPair<QString, QString>>& words)
{
    for (const auto& [text, word] : words) {
        if (box->currentText() == text)
            return word;
    }
    return QString();
}

} // namespace

QRTZEBCore::QRTZEBCore(QWidget* parent, const char* name)
    : QWidget(parent), faceVal("15"), meshVal("15")
{
    setObjectName(QString::fromLatin1(name));

    auto* outer = boxLayout(QBoxLayout::TopToBottom, this, 0, -1);
    auto* groups = boxLayout(QBoxLayout::LeftToRight, nullptr, 0, -1);
    outer->addLayout(groups, 6);
    groups->addStretch(1);
    groups->addWidget(createOptionsBox(), 20);
    groups->addStretch(1);
    groups->addWidget(createMeshBox(), 30);
    groups->addStretch(1);

    connectControls();
    outer->activate();
    disableCoarsenBox();
}

QRTZEBCore::~QRTZEBCore() = default;

QGroupBox* QRTZEBCore::createOptionsBox()
{
    auto* box = new QGroupBox(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(filerow::frameMargins());
    grid->setSpacing(-1);
    const int columnStretch[] = {0, 10, 1, 10, 1};
    for (int c = 0; c < 5; ++c)
        grid->setColumnStretch(c, columnStretch[c]);
    for (int r = 0; r <= 10; ++r)
        grid->setRowStretch(r, r % 2 ? 4 : 1);

    // Labels first, then the boxes: the focus chain follows creation.
    const QList<QLabel*> labels = {
        label("Invariants:", box, nullptr,
              "Compute inertia invariants and store in ZEB.  Full can be quite slow."),
        label("Units:", box, nullptr, "ZEBs with SI units perform better with Ondrel/View"),
        label("Formatting:", box), label("Precision:", box), label("Stress & Strain Modes:", box)};
    invarCB = comboBox("invarCB", {"Fast Set", "Full Set", "None"}, box);
    unitsCB = comboBox("unitsCB", {"Original", "SI"}, box);
    formatCB = comboBox("formatCB", {"Standard Portable", "Platform Specific"}, box);
    precisionCB = comboBox("precisionCB", {"Double", "Single"}, box);
    sparseModesCB = comboBox("sparseModesCB", {"Sparse", "Full", "Remove zero entries"}, box);
    const QList<QComboBox*> boxes = {invarCB, unitsCB, formatCB, precisionCB, sparseModesCB};
    for (int i = 0; i < boxes.size(); ++i) {
        grid->addWidget(labels.at(i), 2 * i + 1, 1);
        grid->addWidget(boxes.at(i), 2 * i + 1, 3);
        filerow::nameAfter(boxes.at(i), labels.at(i));
    }

    geometryOnlyBox = fixedToHint(new QCheckBox("Rigid-Only ZEB", box));
    grid->addWidget(geometryOnlyBox, 11, 1);

    scriptPB =
        pictures::pictureButton(box, pictures::scriptButton(),
                                "Generate a \"zebscript.dat\" file with the ZEB write options.");
    grid->addWidget(scriptPB, 12, 3);
    return box;
}

QGroupBox* QRTZEBCore::createMeshBox()
{
    auto* box = new QGroupBox("Mesh Simplification", this);
    box->setObjectName("rightBox");
    box->setAlignment(Qt::AlignHCenter);
    auto* layout = boxLayout(QBoxLayout::TopToBottom, box, 0, -1);
    layout->addStretch(2);

    tabBar = new QTabBar(box);
    tabBar->setShape(QTabBar::RoundedNorth);
    tabBar->addTab("&Automatic");
    tabBar->addTab("&Manual");
    layout->addWidget(tabBar, 4);

    widgetStack = new QStackedWidget(box);
    widgetStack->setObjectName("WidgetStack");
    widgetStack->setFrameStyle(QFrame::WinPanel | QFrame::Raised);
    layout->addWidget(widgetStack, 14);
    createAutoPage();
    createManualPage();
    widgetStack->setCurrentIndex(0);
    return box;
}

void QRTZEBCore::createAutoPage()
{
    autoPage = new QWidget(widgetStack);
    autoPage->setObjectName("autoPage");
    widgetStack->insertWidget(0, autoPage);
    auto* grid = new QGridLayout(autoPage);
    grid->setContentsMargins(filerow::frameMargins());
    grid->setSpacing(-1);

    stripFaceBox = fixedToHint(
        checkBox("Remove Internal Solid Element Geometry", autoPage, headingFont(), true));
    stripFaceBox->setToolTip("Recommended for improved graphics performance.");
    auto* separator = new QFrame(autoPage);
    separator->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    coarsenBox = checkBox("Apply Mesh Coarsening Algorithm", autoPage, headingFont(), false);

    const QFont plain = plainFont();
    QLabel* meshText = label("Mesh Resolution:", autoPage, &plain,
                             "Limit node density the ration of this component size.");
    QLabel* faceText = label("Face Smoothing:", autoPage, &plain, "Parallel face angle tolerance");
    QLabel* nodesText = label("Retained Node List:", autoPage);
    const QFont value = valueFont();
    meshLbl = label("15 %", autoPage, &value);
    meshLbl->setObjectName("meshLbl");
    faceLbl = label("15 deg", autoPage, &value);
    faceLbl->setObjectName("faceLbl");
    meshResSL = percentSlider("meshResSL", autoPage);
    faceSmoothSL = percentSlider("faceSmoothSL", autoPage);

    colinearBox = fixedToHint(checkBox("Remove Colinear Points", autoPage, noteFont(), true));
    colinearBox->setToolTip("Remove co-linear edge nodes after coarsening.");
    preserveModesBox =
        fixedToHint(checkBox("Preserve Stress and Strain Modes", autoPage, noteFont(), false));
    retainedNodesLE = new QLineEdit(autoPage);
    retainedNodesLE->setFixedSize(250, 25);
    // A node list can be far longer than the default limit of 32767 characters.
    retainedNodesLE->setMaxLength(std::numeric_limits<int>::max());
    retainedNodesLE->setToolTip(
        "Nodes which will be preserved during coarsening. Example: 1 3:10 11 15");

    grid->addWidget(stripFaceBox, 1, 1, 1, 2);
    grid->addWidget(separator, 2, 1, 1, 6);
    grid->addWidget(coarsenBox, 3, 1, 1, 2);
    grid->addWidget(meshText, 5, 2);
    grid->addWidget(meshLbl, 5, 4);
    grid->addWidget(meshResSL, 5, 6);
    grid->addWidget(faceText, 7, 2);
    grid->addWidget(faceLbl, 7, 4);
    grid->addWidget(faceSmoothSL, 7, 6);
    grid->addWidget(colinearBox, 9, 2);
    grid->addWidget(preserveModesBox, 10, 2);
    grid->addWidget(nodesText, 12, 2);
    grid->addWidget(retainedNodesLE, 13, 2, 1, 5);
    filerow::nameAfter(meshResSL, meshText);
    filerow::nameAfter(faceSmoothSL, faceText);
    filerow::nameAfter(retainedNodesLE, nodesText);
}

void QRTZEBCore::createManualPage()
{
    manualPage = new QWidget(widgetStack);
    widgetStack->insertWidget(1, manualPage);
    auto* layout = boxLayout(QBoxLayout::TopToBottom, manualPage, 12, 2);
    layout->addStretch(1);
    const QFont heading = headingFont();
    QLabel* sketchLabel = label("Apply Sketch File:", manualPage, &heading);
    layout->addWidget(sketchLabel, 4, Qt::AlignLeft);

    sketchCombo = new QMFileLineEdit(manualPage, "sketchCombo", QMFileLineEdit::FileMode);
    sketchLabel->setBuddy(sketchCombo); // names the field for screen readers
    sketchCombo->filter = "All Files (*)";
    sketchCombo->setFixedSize(200, 25);
    layout->addWidget(sketchCombo, 4, Qt::AlignLeft);
    layout->addStretch(1);

    auto* example = new QGroupBox("Example File Contents", manualPage);
    example->setAlignment(Qt::AlignLeft);
    layout->addWidget(example, 10);
    layout->addStretch(1);

    auto* lines = boxLayout(QBoxLayout::TopToBottom, example, filerow::frameRoom, -1);
    lines->addStretch(1);
    const QFont plain = plainFont();
    for (const char* text :
         {"3                           Sketch geometry has three faces.",
          "2 1 3                     Two vertex 'face' from NODEID 1 to 3",
          "3 3 4 5                  Triangular face connecting nodes 3, 4 and 5",
          "4 11 12 13 14       Four node face connecting nodes 11, 12, 13 and 14"})
        lines->addWidget(label(text, example, &plain), 1, Qt::AlignLeft);
    lines->addStretch(1);
}

void QRTZEBCore::connectControls()
{
    // toggled, not clicked: a box changed by the keyboard or by an assistive
    // tool acts as one changed by the mouse.
    connect(geometryOnlyBox, &QCheckBox::toggled, this, &QRTZEBCore::toggleGeometryOnlyBox);
    connect(scriptPB, &QPushButton::clicked, this, &QRTZEBCore::genScript);
    connect(coarsenBox, &QCheckBox::toggled, this, [this](bool on) {
        if (on != coarsenOn) // not when the box is set to match the flag
            toggleCoarsenBox();
    });
    connect(meshResSL, &QSlider::valueChanged, this, &QRTZEBCore::convertMeshSliderInt);
    connect(this, &QRTZEBCore::setMeshLblVal, meshLbl, &QLabel::setText);
    connect(faceSmoothSL, &QSlider::valueChanged, this, &QRTZEBCore::convertFaceSliderInt);
    connect(this, &QRTZEBCore::setFaceLblVal, faceLbl, &QLabel::setText);
    connect(tabBar, &QTabBar::currentChanged, this, &QRTZEBCore::selectTab);
}

void QRTZEBCore::convertMeshSliderInt(int val)
{
    // Two digits, for the fixed "0." the options string puts in front.
    meshVal = val < 10 ? QString::asprintf("0%d", val) : QString::number(val);
    emit setMeshLblVal(meshVal + " %");
}

void QRTZEBCore::convertFaceSliderInt(int val)
{
    faceVal = QString::number(val);
    emit setFaceLblVal(faceVal + " deg");
}

void QRTZEBCore::toggleCoarsenBox()
{
    // Qt has already flipped the box; the flag says what the state was.
    if (coarsenOn)
        disableCoarsenBox();
    else
        enableCoarsenBox();
}

void QRTZEBCore::toggleGeometryOnlyBox()
{
    const bool enabled = !geometryOnlyBox->isChecked();
    invarCB->setEnabled(enabled);
    sparseModesCB->setEnabled(enabled);
}

void QRTZEBCore::enableCoarsenBox()
{
    coarsenBox->setChecked(true);
    setCoarsenControlsEnabled(true);
    coarsenOn = true;
}

void QRTZEBCore::disableCoarsenBox()
{
    coarsenBox->setChecked(false);
    setCoarsenControlsEnabled(false);
    coarsenOn = false;
}

void QRTZEBCore::setCoarsenControlsEnabled(bool enabled)
{
    const QList<QWidget*> controls = {meshResSL,        faceSmoothSL, retainedNodesLE, colinearBox,
                                      preserveModesBox, meshLbl,      faceLbl};
    for (QWidget* control : controls)
        control->setEnabled(enabled);
}

void QRTZEBCore::selectTab(int id)
{
    widgetStack->setCurrentIndex(id);
}

QString QRTZEBCore::writeOptions()
{
    QString solidFaces;
    QString simplification;
    switch (tabBar->currentIndex()) {
    case 0:
        if (coarsenOn)
            simplification = coarsenForm();
        if (stripFaceBox->isChecked())
            solidFaces = "strip_face";
        break;
    case 1:
        if (sketchCombo->text().isEmpty()) {
            MessageBox::warn("Missing Sketch File", "You must supply a sketch filename.");
            return QString();
        }
        simplification = "sketch(" + sketchCombo->text() + ")";
        break;
    default:
        std::cout << "tab not set" << std::endl;
        break;
    }

    // Rigid-only disables the two boxes whose content then has no meaning.
    const QString invariants =
        invarCB->isEnabled()
            ? wordFor(invarCB, {{"Fast Set", "fast_invar"}, {"Full Set", "full_invar"}})
            : QString();
    const QString modes =
        sparseModesCB->isEnabled()
            ? wordFor(sparseModesCB, {{"Full", "full_str"}, {"Remove zero entries", "sparse_str"}})
            : QString();
    const QStringList positions = {invariants,
                                   wordFor(unitsCB, {{"SI", "MKS"}}),
                                   wordFor(formatCB, {{"Platform Specific", "no_xdr"}}),
                                   wordFor(precisionCB, {{"Single", "single"}}),
                                   geometryOnlyBox->isChecked() ? "empty" : "",
                                   modes,
                                   solidFaces,
                                   simplification};
    return "OKT_ZEBWRITE_OPTIONS= " + positions.join(' ');
}

QString QRTZEBCore::coarsenForm() const
{
    QStringList fields = {"0." + meshVal, faceVal, colinearBox->isChecked() ? "1" : "0"};
    const QString nodes = retainedNodesLE->text();
    if (!nodes.isEmpty())
        fields.append(nodes);
    if (preserveModesBox->isChecked())
        fields.append("preserve_str");
    return "coarsen(" + fields.join(", ") + ")";
}

void QRTZEBCore::genScript()
{
    bool deleted = false;
    const std::string dir = platform::workingDirectory(&deleted);
    if (deleted || !QFileInfo(QString::fromLocal8Bit(dir.c_str())).isWritable()) {
        MessageBox::warn(unableToWrite, QString(unableText) + "Check permissions." +
                                            (deleted ? "\nThe directory no longer exists." : ""));
        return;
    }
    // Opened first: a file that cannot be written is all the user hears of.
    // A missing sketch name leaves the file with one line end.
    platform::FileReplacement file(scriptFileName);
    const QByteArray bytes =
        file.error().empty() ? writeOptions().toLocal8Bit() + '\n' : QByteArray();
    if (!file.write(bytes.constData(), std::size_t(bytes.size())) || !file.commit()) {
        MessageBox::warn(unableToWrite, QString(unableText) + "Check disk space.\n" +
                                            QString::fromLocal8Bit(file.error().c_str()));
        return;
    }
    QMListDialog dialog(QDir::currentPath() + "/" + scriptFileName, nullptr, nullptr, true, {});
    dialog.exec();
}

// An entry the kernel would refuse would make every later start fail, so
// it is refused here and the old one kept.
bool QRTZEBCore::putOptions()
{
    const QByteArray options = writeOptions().toLocal8Bit();
    if (options.isEmpty())
        return true;
    const std::size_t limit = platform::environmentEntryLimit("OKT_ZEBWRITE_OPTIONS");
    if (std::size_t(options.size()) > limit) {
        // Only the node list or the sketch name can grow: the rest is words.
        const char* part = tabBar->currentIndex() == 1 ? "sketch file name" : "node list";
        MessageBox::warn("Write Options Too Long",
                         QString("The write options are %1 bytes long, but an environment entry "
                                 "may hold at most %2 bytes.\nShorten the %3. Nothing was run.")
                             .arg(options.size())
                             .arg(limit)
                             .arg(part));
        return false;
    }
    platform::putEnv(options.toStdString());
    return true;
}
