// A block page's plot: which of the sample's blocks the browser gives a table
// and a plot besides the text, and what it plots for them; the decimation
// that keeps each pixel column's extremes, zooming with the wheel, a band and
// a double click, the pointer's tool tip, and saving as PNG and SVG from the
// button and the menu.
#include "blockchartview.h"
#include "blockpage.h"
#include "blockplotdecimator.h"
#include "blocktableview.h"
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

QPoint onView(BlockPlot* plot, const QPointF& value)
{
    const QPointF inChart = plot->chart()->mapToPosition(value, seriesOf(plot));
    return plot->chartView()->mapFromScene(plot->chart()->mapToScene(inChart));
}

// A page the browser made for a block of the sample (-1: Mode Shapes, its
// translation failing; 0: Mode Shapes of a file without data), switched to
// its plot unless asked not to.
struct SamplePage {
    ScratchDir dir;
    QWidget tab;
    BlockPage* page = nullptr;
    BlockPlot* plot = nullptr;
    explicit SamplePage(int block, bool showPlot = true)
    {
        Standins standins(dir.path()); // puts the environment back when done
        qputenv("TAMSEL_STANDIN_FAIL_BLOCK", block < 0 ? "8" : "");
        QVERIFY(block || dir.write("empty.zeb", "ZEB 1.0 no data\nblock 8  Mode Shapes\nend\n"));
        ZEBReport report(block ? Standins::examplesDir() + "/beam.zeb" : dir.filePath("empty.zeb"),
                         "");
        QVERIFY(report.showBlock(&tab, block > 0 ? block : 8));
        page = tab.findChild<BlockPage*>();
        if (page && showPlot) {
            page->showView(BlockPage::Plot);
            plot = page->plot();
        }
        tab.resize(700, 500);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
    }
};

} // namespace

class TestBlockPlot : public QObject
{
    Q_OBJECT

private slots:
    void browserPages_data()
    {
        QTest::addColumn<int>("block");      // as for SamplePage
        QTest::addColumn<int>("series");     // 0: text alone, no switch
        QTest::addColumn<QString>("choice"); // "" keeps the first
        QTest::addColumn<QString>("titles"); // of the axes: across|up
        // clang-format off
        QTest::newRow("Mode Shapes, a mode each") << 8  << 16 << "dz"      << "ID|dz";
        QTest::newRow("Nodal Coordinates, x-z")   << 4  << 1  << "x\u2013z" << "x|z";
        QTest::newRow("Generalized Mass")         << 13 << 1  << ""        << "Column 1|Column 3";
        QTest::newRow("Content Summary, by row")  << 3  << 1  << ""        << "Row|Column 2";
        QTest::newRow("Eigenvalues")              << 7  << 1  << ""        << "Mode|Hertz";
        QTest::newRow("Eigenvalues, Radians")     << 7  << 1  << "Radians" << "Mode|Radians";
        QTest::newRow("Version code, one column") << 1  << 0  << ""        << "";
        QTest::newRow("Invariants 1, one column") << 19 << 0  << ""        << "";
        QTest::newRow("error page")               << -1 << 0  << ""        << "";
        QTest::newRow("empty page")               << 0  << 0  << ""        << "";
        // clang-format on
    }

    // Blocks with columns get the switch with the text first, a table of
    // every line and the plot; error, empty and one-column pages are text
    // alone, as they always were.
    void browserPages()
    {
        QFETCH(int, block);
        QFETCH(int, series);
        QFETCH(QString, choice);
        QFETCH(QString, titles);
        SamplePage sample(block, false);
        auto* text = sample.tab.findChild<BlockView*>(block < 0 ? "error parsing block message"
                                                                : "text viewer");
        QVERIFY(text);
        QCOMPARE(sample.page != nullptr, series > 0);
        if (!sample.page)
            return;
        QCOMPARE(sample.page->currentView(), BlockPage::Text);
        QCOMPARE(sample.page->textView(), text);
        sample.page->showView(BlockPage::Table);
        QCOMPARE(sample.page->tableView()->model()->rowCount(), text->blockText().lineCount());
        sample.page->showView(BlockPage::Plot);
        BlockPlot* plot = sample.page->plot();
        if (!choice.isEmpty()) {
            auto* combo = plot->findChild<QComboBox*>();
            combo->setCurrentIndex(combo->findText(choice));
            emit combo->activated(combo->currentIndex());
        }
        QCOMPARE(plot->chart()->series().size(), series);
        QCOMPARE(axisOf(plot, Qt::Horizontal)->titleText() + "|" +
                     axisOf(plot, Qt::Vertical)->titleText(),
                 titles);
        QVERIFY(!seriesOf(plot, series - 1)->points().isEmpty());
    }

    // Hertz (sliced from the page's text here) over the mode on a log axis,
    // rigid-body modes at their tiny values; resting on a point tells its
    // values and line; the box turns the axis linear.
    void eigenvaluesOfTheSample()
    {
        SamplePage page(7);
        QVERIFY(page.plot);
        const BlockText& text = page.page->textView()->blockText();
        const QList<QPointF> points = seriesOf(page.plot)->points();
        QCOMPARE(points.size(), 16);
        for (int i = 0; i < points.size(); ++i)
            QCOMPARE(points[i], QPointF(i + 1, text.line(i).mid(23, 18).toDouble()));
        auto* log = qobject_cast<QLogValueAxis*>(axisOf(page.plot, Qt::Vertical));
        QVERIFY(log && log->min() < points[0].y() && log->max() > points.last().y());

        QTest::mouseMove(page.plot->chartView()->viewport(),
                         onView(page.plot, points[6]) + QPoint(3, 2));
        QTRY_VERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), "Mode: 7\nHertz: 12.52904\nline 7");

        page.plot->findChild<QCheckBox*>()->click();
        QVERIFY(qobject_cast<QValueAxis*>(axisOf(page.plot, Qt::Vertical)));
    }

    void decimator_data()
    {
        QTest::addColumn<QList<QPointF>>("points");
        QTest::addColumn<double>("x1");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QList<qsizetype>>("kept");
        using P = QList<QPointF>;
        using K = QList<qsizetype>;
        QTest::newRow("one column: low and high")
            << P{{0, 1}, {0.1, 5}, {0.2, -3}, {0.3, 2}, {0.4, 1.5}} << 1.0 << 1 << K{1, 2};
        QTest::newRow("a point a column: all")
            << P{{0, 1}, {1, 2}, {2, 3}} << 2.0 << 3 << K{0, 1, 2};
        // The second column has its high before its low.
        QTest::newRow("two columns") << P{{0, 0}, {0.2, 9}, {0.3, 0}, {0.6, 1}, {0.7, -9}, {0.9, 1}}
                                     << 1.0 << 2 << K{0, 1, 3, 4};
        QTest::newRow("outside: only the neighbours")
            << P{{-3, 0}, {-2, 0}, {0.5, 1}, {2, 0}, {3, 0}} << 1.0 << 4 << K{1, 2, 3};
    }

    void decimator()
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

    // 20,000 rows reach the chart as a few points a pixel column, and every
    // column's lowest and highest value is among them: the spike stays. The
    // wheel zooms around the pointer, a band zooms into itself and shows
    // points left out before, a double click shows everything again.
    void longSeries()
    {
        QStringList lines; // IDs from 10000 on fill their 5 characters
        for (int id = 1; id <= 20000; ++id)
            lines << QString("%1%2").arg(id, 5).arg(std::sin(id / 500.0) + (id == 6667 ? 5 : 0), 18,
                                                    'E', 6);
        const BlockText text = BlockText::fromString(lines.join('\n'));
        BlockPlot plot(text, blockLayouts[8], {});
        plot.resize(600, 400);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        const QList<QPointF> shown = seriesOf(&plot)->points();
        QCOMPARE_LE(shown.size(), 2 * qsizetype(plot.chart()->plotArea().width()) + 2);
        const auto byY = [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); };
        QCOMPARE(std::max_element(shown.begin(), shown.end(), byY)->x(), 6667.0);

        QWidget* viewport = plot.chartView()->viewport();
        const auto xRange = [&] {
            const auto* axis = static_cast<QValueAxis*>(axisOf(&plot, Qt::Horizontal));
            return std::make_pair(axis->min(), axis->max());
        };
        const auto [x0, x1] = xRange();
        const QPoint at = onView(&plot, {5000, 0});
        QWheelEvent wheel(at, viewport->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &wheel);
        const auto [w0, w1] = xRange();
        QVERIFY(std::abs((w1 - w0) * 1.25 - (x1 - x0)) < 1e-6 * (x1 - x0));
        QVERIFY(std::abs((5000 - w0) / (w1 - w0) - (5000 - x0) / (x1 - x0)) < 0.01);

        const QPoint from = onView(&plot, {1000, 0.5}), to = onView(&plot, {1200, -0.5});
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        QTest::mouseMove(viewport, to);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
        const auto [b0, b1] = xRange();
        const double pixel = (w1 - w0) / plot.chart()->plotArea().width();
        QVERIFY(std::abs(b0 - 1000) < 2 * pixel && std::abs(b1 - 1200) < 2 * pixel);
        QVERIFY(seriesOf(&plot)->points().size() > 150); // every row of the band
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, to);
        QCOMPARE(xRange(), std::make_pair(x0, x1));

        // Resized, the chart is laid out anew once the size holds still, or
        // at once when it is saved.
        const auto laidOut = [&] {
            return plot.chart()->size().toSize() == plot.chartView()->size();
        };
        for (const QSize size : {QSize(700, 450), QSize(640, 420)}) {
            plot.resize(size);
            QCoreApplication::processEvents();
            if (size.width() == 700)
                QTRY_VERIFY(laidOut());
            else
                QVERIFY(!plot.png().isEmpty() && laidOut());
        }
    }

    void save_data()
    {
        QTest::addColumn<QString>("menuEntry"); // "" for the button
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        // clang-format off
        QTest::newRow("button, PNG")     << ""             << "plot"     << "plot.png";
        QTest::newRow("menu, SVG")       << "Save as SVG…" << "plot"     << "plot.svg";
        QTest::newRow("menu, PNG named") << "Save as PNG…" << "a b$.png" << "a b$.png";
        // clang-format on
    }

    void save()
    {
        QFETCH(QString, menuEntry);
        QFETCH(QString, name);
        QFETCH(QString, file);
        SamplePage page(7);
        QVERIFY(page.plot);
        DialogAnswerer answers;
        (menuEntry.isEmpty() ? answers : answers.chooseMenuEntry(menuEntry))
            .chooseFile(page.dir.filePath(name));
        QWidget* viewport = page.plot->chartView()->viewport();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {20, 20},
                               viewport->mapToGlobal(QPoint(20, 20)));
        if (menuEntry.isEmpty())
            page.plot->findChild<QPushButton*>("save plot")->click();
        else
            QApplication::sendEvent(viewport, &menu);
        QVERIFY(answers.unexpected().isEmpty());
        const QByteArray bytes = page.dir.read(file);
        if (file.endsWith(".svg"))
            QVERIFY(bytes.contains("<svg") && bytes.contains("<title>Hertz over Mode</title>"));
        else
            QCOMPARE(QImage::fromData(bytes, "PNG").size(),
                     page.plot->chartView()->size() * page.plot->devicePixelRatio());
    }
};

QTEST_MAIN(TestBlockPlot)
#include "test_blockplot.moc"
