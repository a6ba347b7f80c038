// A block page's plot: what the browser plots for the sample's blocks, the
// decimation that keeps each pixel column's extremes, zooming with the wheel,
// a band and a double click, the pointer's tool tip, and saving as PNG and
// SVG from the button and the menu.
#include "blockchartview.h"
#include "blockpage.h"
#include "blockplotdecimator.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLogValueAxis>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QValueAxis>
#include <QXYSeries>

#include <algorithm>
#include <cmath>

namespace
{

QXYSeries* seriesOf(BlockPlot* plot, int i = 0)
{
    return static_cast<QXYSeries*>(plot->chart()->series().value(i));
}

QAbstractAxis* axisOf(BlockPlot* plot, Qt::Orientation orientation)
{
    return plot->chart()->axes(orientation).value(0);
}

std::pair<double, double> xRange(BlockPlot* plot)
{
    const auto* axis = static_cast<QValueAxis*>(axisOf(plot, Qt::Horizontal));
    return {axis->min(), axis->max()};
}

QPoint onView(BlockPlot* plot, const QPointF& value)
{
    const QPointF inChart = plot->chart()->mapToPosition(value, seriesOf(plot));
    return plot->chartView()->mapFromScene(plot->chart()->mapToScene(inChart));
}

// The Hertz column of the sample's Eigenvalues, as the file holds it.
QList<double> sampleHertz()
{
    QFile file(Standins::examplesDir() + "/beam.zeb");
    file.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = file.readAll().split('\n');
    QList<double> hertz;
    for (qsizetype i = lines.indexOf("block 7  Eigenvalues") + 1; !lines[i].startsWith("block");
         ++i)
        hertz << lines[i].mid(23, 18).trimmed().toDouble();
    return hertz;
}

// A page the browser made for a block of the sample, switched to its plot.
struct SamplePage {
    ScratchDir dir;
    QWidget tab;
    BlockPlot* plot = nullptr;
    explicit SamplePage(int block)
    {
        Standins standins(dir.path());
        ZEBReport report(Standins::examplesDir() + "/beam.zeb", "");
        report.showBlock(&tab, block);
        auto* page = tab.findChild<BlockPage*>();
        QVERIFY(page);
        page->showView(BlockPage::Plot);
        plot = page->plot();
        tab.resize(700, 500);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
    }
};

// A long wavy series with a spike: node IDs over values.
struct LongPlot {
    BlockText text;
    BlockPlot plot;
    static BlockText makeText(int rows)
    {
        BlockText text;
        for (int i = 0; i < rows; ++i) {
            const double y = std::sin(i / 500.0) + (i == rows / 3 ? 5 : 0);
            const QByteArray line = QByteArray::number(i + 1).rightJustified(5) +
                                    QByteArray::number(y, 'E', 6).rightJustified(18);
            text.appendLine(line.constData(), line.size());
        }
        return text;
    }
    explicit LongPlot(int rows) : text(makeText(rows)), plot(text, blockLayouts[8], {})
    {
        plot.resize(600, 400);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
    }
};

} // namespace

class TestBlockPlot : public QObject
{
    Q_OBJECT

private slots:
    void eigenvaluesOfTheSample();
    void sampleBlocks_data();
    void sampleBlocks();
    void decimator_data();
    void decimator();
    void plotKeepsExtremes();
    void zoom();
    void toolTip();
    void save_data();
    void save();
};

// Hertz over the mode on a log axis, rigid-body modes at their tiny values.
void TestBlockPlot::eigenvaluesOfTheSample()
{
    SamplePage page(7);
    QVERIFY(page.plot);
    const QList<double> hertz = sampleHertz();
    QCOMPARE(hertz.size(), 16);
    QCOMPARE(page.plot->chart()->series().size(), 1);
    const QList<QPointF> points = seriesOf(page.plot)->points();
    QCOMPARE(points.size(), hertz.size());
    for (int i = 0; i < points.size(); ++i)
        QCOMPARE(points[i], QPointF(i + 1, hertz[i]));
    QCOMPARE(axisOf(page.plot, Qt::Horizontal)->titleText(), "Mode");
    QCOMPARE(axisOf(page.plot, Qt::Vertical)->titleText(), "Hertz");
    auto* log = qobject_cast<QLogValueAxis*>(axisOf(page.plot, Qt::Vertical));
    QVERIFY(log);
    QVERIFY(log->min() < hertz[0] && log->max() > hertz.last());

    page.plot->findChild<QCheckBox*>()->click();
    QVERIFY(qobject_cast<QValueAxis*>(axisOf(page.plot, Qt::Vertical)));
    auto* column = page.plot->findChild<QComboBox*>();
    column->setCurrentIndex(column->findText("Radians"));
    emit column->activated(column->currentIndex());
    QCOMPARE(axisOf(page.plot, Qt::Vertical)->titleText(), "Radians");
}

void TestBlockPlot::sampleBlocks_data()
{
    QTest::addColumn<int>("block");
    QTest::addColumn<int>("series");
    QTest::addColumn<QString>("xTitle");
    QTest::addColumn<QString>("yTitle");
    QTest::addColumn<QString>("choice");
    QTest::newRow("Mode Shapes, a series a mode") << 8 << 16 << "ID"
                                                  << "dz"
                                                  << "dz";
    QTest::newRow("Nodal Coordinates, x-z") << 4 << 1 << "x"
                                            << "z"
                                            << "x\u2013z";
    QTest::newRow("Generalized Mass") << 13 << 1 << "Column 1"
                                      << "Column 3"
                                      << "";
    QTest::newRow("Content Summary, over the row") << 3 << 1 << "Row"
                                                   << "Column 2"
                                                   << "";
}

void TestBlockPlot::sampleBlocks()
{
    QFETCH(int, block);
    QFETCH(int, series);
    QFETCH(QString, xTitle);
    QFETCH(QString, yTitle);
    QFETCH(QString, choice);
    SamplePage page(block);
    QVERIFY(page.plot);
    auto* combo = page.plot->findChild<QComboBox*>();
    if (!choice.isEmpty()) {
        combo->setCurrentIndex(combo->findText(choice));
        emit combo->activated(combo->currentIndex());
    }
    QCOMPARE(page.plot->chart()->series().size(), series);
    QCOMPARE(axisOf(page.plot, Qt::Horizontal)->titleText(), xTitle);
    QCOMPARE(axisOf(page.plot, Qt::Vertical)->titleText(), yTitle);
    QVERIFY(!seriesOf(page.plot, series - 1)->points().isEmpty());
}

void TestBlockPlot::decimator_data()
{
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<double>("x1");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QList<qsizetype>>("kept");
    using P = QList<QPointF>;
    using K = QList<qsizetype>;
    QTest::newRow("one column: low and high")
        << P{{0, 1}, {0.1, 5}, {0.2, -3}, {0.3, 2}, {0.4, 1.5}} << 1.0 << 1 << K{1, 2};
    QTest::newRow("high before low") << P{{0, 1}, {0.1, -5}, {0.2, 3}} << 1.0 << 1 << K{1, 2};
    QTest::newRow("a point a column: all") << P{{0, 1}, {1, 2}, {2, 3}} << 2.0 << 3 << K{0, 1, 2};
    QTest::newRow("two columns") << P{{0, 0}, {0.2, 9}, {0.3, 0}, {0.6, 1}, {0.7, -9}, {0.9, 1}}
                                 << 1.0 << 2 << K{0, 1, 3, 4};
    QTest::newRow("outside: only the neighbours")
        << P{{-3, 0}, {-2, 0}, {0.5, 1}, {2, 0}, {3, 0}} << 1.0 << 4 << K{1, 2, 3};
}

void TestBlockPlot::decimator()
{
    QFETCH(QList<QPointF>, points);
    QFETCH(double, x1);
    QFETCH(int, columns);
    QFETCH(QList<qsizetype>, kept);
    const std::vector<QPointF> all(points.begin(), points.end());
    const std::vector<qsizetype> got =
        BlockPlotDecimator::minMax(all, 0, qsizetype(all.size()), 0, x1, columns);
    QCOMPARE(QList<qsizetype>(got.begin(), got.end()), kept);
}

// 100,000 rows reach the chart as a few points a pixel column, and every
// column's lowest and highest value is among them: the spike stays.
void TestBlockPlot::plotKeepsExtremes()
{
    LongPlot p(99999); // IDs fill their 5 characters
    const QList<QPointF> shown = seriesOf(&p.plot)->points();
    QVERIFY2(shown.size() <= 2 * p.plot.chart()->plotArea().width() + 2,
             qPrintable(QString::number(shown.size())));
    const auto byY = [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); };
    const QPointF spike = *std::max_element(shown.begin(), shown.end(), byY);
    QCOMPARE(spike.x(), 99999 / 3 + 1.0);
    QVERIFY(std::min_element(shown.begin(), shown.end(), byY)->y() < -0.99);
}

// The wheel zooms around the pointer, a band zooms into itself and shows
// points left out before, a double click shows everything again.
void TestBlockPlot::zoom()
{
    LongPlot p(20000);
    QWidget* viewport = p.plot.chartView()->viewport();
    const auto [x0, x1] = xRange(&p.plot);
    const QPoint at = onView(&p.plot, {5000, 0});
    QWheelEvent wheel(at, viewport->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &wheel);
    const auto [w0, w1] = xRange(&p.plot);
    QVERIFY(std::abs((w1 - w0) * 1.25 - (x1 - x0)) < 1e-6 * (x1 - x0));
    QVERIFY(std::abs((5000 - w0) / (w1 - w0) - (5000 - x0) / (x1 - x0)) < 0.01);

    const qsizetype before = seriesOf(&p.plot)->points().size();
    const QPoint from = onView(&p.plot, {1000, 0.5}), to = onView(&p.plot, {1200, -0.5});
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, to);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
    const auto [b0, b1] = xRange(&p.plot);
    const double pixel = (w1 - w0) / p.plot.chart()->plotArea().width();
    QVERIFY(std::abs(b0 - 1000) < 2 * pixel && std::abs(b1 - 1200) < 2 * pixel);
    QVERIFY(seriesOf(&p.plot)->points().size() > 150); // every row of the band
    QVERIFY(before > 0);

    QTest::mouseDClick(viewport, Qt::LeftButton, {}, to);
    QCOMPARE(xRange(&p.plot), std::make_pair(x0, x1));
}

// Resting on a point tells its values and line.
void TestBlockPlot::toolTip()
{
    SamplePage page(7);
    QVERIFY(page.plot);
    const QPointF mode7 = seriesOf(page.plot)->points()[6];
    QWidget* viewport = page.plot->chartView()->viewport();
    const QPoint at = onView(page.plot, mode7) + QPoint(3, 2);
    QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QTRY_VERIFY(QToolTip::isVisible());
    QCOMPARE(QToolTip::text(), "Mode: 7\nHertz: 12.52904\nline 7");
}

void TestBlockPlot::save_data()
{
    QTest::addColumn<QString>("menuEntry"); // "" for the button
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("button, PNG") << ""
                                 << "plot"
                                 << "plot.png";
    QTest::newRow("menu, SVG") << "Save as SVG…"
                               << "plot"
                               << "plot.svg";
    QTest::newRow("menu, PNG named") << "Save as PNG…"
                                     << "a b$.png"
                                     << "a b$.png";
}

void TestBlockPlot::save()
{
    QFETCH(QString, menuEntry);
    QFETCH(QString, name);
    QFETCH(QString, file);
    SamplePage page(7);
    QVERIFY(page.plot);
    DialogAnswerer answers;
    if (!menuEntry.isEmpty())
        answers.chooseMenuEntry(menuEntry);
    answers.chooseFile(page.dir.filePath(name));
    if (menuEntry.isEmpty()) {
        page.plot->findChild<QPushButton*>("save plot")->click();
    } else {
        QWidget* viewport = page.plot->chartView()->viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20},
                                viewport->mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(viewport, &event);
    }
    QVERIFY(answers.unexpected().isEmpty());
    const QByteArray bytes = page.dir.read(file);
    if (file.endsWith(".svg")) {
        QVERIFY(bytes.contains("<svg"));
        QVERIFY(bytes.contains("<title>Hertz over Mode</title>"));
    } else {
        QCOMPARE(QImage::fromData(bytes, "PNG").size(),
                 page.plot->chartView()->size() * page.plot->devicePixelRatio());
    }
}

QTEST_MAIN(TestBlockPlot)
#include "test_blockplot.moc"
