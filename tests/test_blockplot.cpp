// A block page's plot: which of the sample's blocks the browser gives a table
// and a plot besides the text, and what it plots for them; pictures that
// must not mislead (dense points, non-finite and huge values, modes, log
// axes, one scale for a projection, labels at a small size); zooming with
// the wheel, a band, the keys and typed ranges, the legend, the pointer's
// tool tip, the switch as assistive technology sees it, and saving as PNG,
// SVG and PDF.
#include "blockchartview.h"
#include "blockpage.h"
#include "blockplotdecimator.h"
#include "blocktableview.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include <QAccessible>
#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QGraphicsTextItem>
#include <QImage>
#include <QLegendMarker>
#include <QLineEdit>
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

// Eigenvalues with this Hertz, or Mode Shapes of these node IDs and "Mode n"
// headings; each line reaches into the layout's last column.
BlockText blockOf(bool eigenvalues, const QStringList& cells)
{
    QStringList lines;
    for (int i = 0; i < cells.size(); ++i) {
        const QString& cell = cells[i];
        if (cell.startsWith("Mode")) {
            lines << "  " + cell;
            continue;
        }
        QString line = QString::number(eigenvalues ? i + 1 : cell.toInt()).rightJustified(5);
        const QStringList rest = eigenvalues
                                     ? QStringList{"1.0", cell, "1.0", "1.0", "1.0"}
                                     : QStringList{QString::number(i), "0", "0", "0", "0", "0"};
        for (const QString& value : rest)
            line += value.rightJustified(18);
        lines << line;
    }
    return BlockText::fromString(lines.join('\n'));
}

// A page the browser made for a block of the sample (-1: Mode Shapes, its
// translation failing; 0: Mode Shapes of a file without data), or of body 1
// of the database, switched to its plot unless asked not to.
struct SamplePage {
    ScratchDir dir;
    QWidget tab;
    BlockPage* page = nullptr;
    BlockPlot* plot = nullptr;
    explicit SamplePage(int block, bool showPlot = true, QSize size = {700, 500},
                        const QString& file = "beam.zeb")
    {
        Standins standins(dir.path()); // puts the environment back when done
        qputenv("TAMSEL_STANDIN_FAIL_BLOCK", block < 0 ? "8" : "");
        QVERIFY(block || dir.write("empty.zeb", "ZEB 1.0 no data\nblock 8  Mode Shapes\nend\n"));
        ZEBReport report(block ? Standins::examplesDir() + "/" + file : dir.filePath("empty.zeb"),
                         file.endsWith(".MASTER") ? "1" : "");
        QVERIFY(report.showBlock(&tab, block > 0 ? block : 8));
        page = tab.findChild<BlockPage*>();
        if (page && showPlot) {
            page->showView(BlockPage::Plot);
            plot = page->plot();
        }
        tab.resize(size);
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
        QTest::addColumn<int>("series");     // -1: text alone, no switch; 0: no plot
        QTest::addColumn<QString>("choice"); // "" keeps the first
        QTest::addColumn<QString>("titles"); // of the axes: across|up
        // clang-format off
        QTest::newRow("Mode Shapes, a mode each") << 8  << 16 << ""        << "ID|dx";
        QTest::newRow("Mode Shapes, dz")          << 8  << 16 << "dz"      << "ID|dz";
        QTest::newRow("Nodal Coordinates, x-z")   << 4  << 1  << "x\u2013z" << "x|z";
        QTest::newRow("Generalized Mass")         << 13 << 1  << ""        << "Column 1|Column 3";
        QTest::newRow("Nodal Inertias, numbers")  << 10 << 1  << ""        << "Row|Column 3";
        QTest::newRow("Eigenvalues")              << 7  << 1  << ""        << "Mode|Hertz";
        QTest::newRow("Eigenvalues, Radians")     << 7  << 1  << "Radians" << "Mode|Radians";
        QTest::newRow("Content Summary")          << 3  << 0  << ""        << "";
        QTest::newRow("Global Body Properties")   << 6  << 0  << ""        << "";
        QTest::newRow("Element Faces")            << 14 << 0  << ""        << "";
        QTest::newRow("Version code, one column") << 1  << -1 << ""        << "";
        QTest::newRow("error page")               << -1 << -1 << ""        << "";
        QTest::newRow("empty page")               << 0  << -1 << ""        << "";
        // clang-format on
    }

    // Blocks with columns get the switch with the text first, a table of
    // every line and, where the columns go together, the plot of the first
    // column that varies; error, empty and one-column pages are text alone.
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
        QCOMPARE(sample.page != nullptr, series >= 0);
        if (!sample.page)
            return;
        QCOMPARE(sample.page->currentView(), BlockPage::Text);
        QCOMPARE(sample.page->textView(), text);
        sample.page->showView(BlockPage::Table);
        QCOMPARE(sample.page->tableView()->model()->rowCount(), text->blockText().lineCount());
        sample.page->showView(BlockPage::Plot);
        QCOMPARE(sample.page->switchButton(BlockPage::Plot)->isVisible(), series > 0);
        BlockPlot* plot = sample.page->plot();
        QCOMPARE(plot != nullptr, series > 0);
        if (!plot)
            return;
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
        // The first twelve series have colours well apart.
        for (int i = 0; i < std::min(series, 12); ++i)
            for (int j = 0; j < i; ++j) {
                const QColor a = seriesOf(plot, i)->color(), b = seriesOf(plot, j)->color();
                QCOMPARE_GE(
                    std::hypot(a.red() - b.red(), a.green() - b.green(), a.blue() - b.blue()),
                    60.0);
            }
    }

    // Hertz (sliced from the page's text here) over the mode on a log axis,
    // rigid-body modes at their tiny values; resting on a point tells its
    // values and line; the box turns the axis linear; a dark palette.
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

        // A dark palette brings the dark theme; the series keep their colours.
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::black);
        const QColor colour = seriesOf(page.plot)->color();
        page.plot->setPalette(dark);
        QCOMPARE(page.plot->chart()->theme(), QChart::ChartThemeDark);
        QCOMPARE(seriesOf(page.plot)->color(), colour);
    }

    void wrongPictures_data()
    {
        QTest::addColumn<bool>("eigenvalues"); // else Mode Shapes, a series a mode
        QTest::addColumn<QStringList>("cells");
        QTest::addColumn<bool>("log");
        QTest::addColumn<QString>("series"); // name:points|...
        QTest::addColumn<QString>("note");   // a piece of it; "" for none
        using L = QStringList;
        const char* const mode1 = "Mode 1:3|Mode 2:3";
        // clang-format off
        QTest::newRow("inf and nan, log") << true << L{"1.0", "inf", "nan", "-inf", "4.0"} << true
            << "Hertz:2" << "3 row(s) not plotted: no finite number in Hertz or Mode";
        QTest::newRow("+-1e308") << true << L{"1E308", "-1.797693E+308", "0"} << false
            << "Hertz:3" << "";
        QTest::newRow("log, at or below 0") << true << L{"-3E-7", "0", "2.5", "40"} << true
            << "Hertz:2|\u2264 0, not to scale:2" << "2 value(s) at or below 0";
        QTest::newRow("nothing to plot") << true << L{"nan", "x"} << false
            << "" << "Nothing to plot: no row of this block has a finite number in Hertz";
        QTest::newRow("modes by heading") << false << L{"Mode 1", "3", "1", "2", "Mode 2", "3", "1"}
            << false << "Mode 1:3|Mode 2:2" << "";
        QTest::newRow("modes as equal runs") << false << L{"3", "1", "2", "3", "1", "2"} << false
            << mode1 << "";
        QTest::newRow("modes unknown") << false << L{"1", "2", "3", "1", "2"} << false
            << "Mode 1:5" << "does not say where each mode begins";
        // clang-format on
        QStringList many, shown;
        for (int m = 1; m <= 65; ++m)
            many << QString("Mode %1").arg(m) << "1";
        for (int m = 1; m <= 64; ++m)
            shown << QString("Mode %1:1").arg(m);
        QTest::newRow("65 modes") << false << many << false << shown.join('|')
                                  << "Only the first 64 of 65 modes are plotted.";
    }

    // What cannot be drawn is left out and said under the plot; every
    // point drawn lies inside finite axis ranges; modes are what the
    // report says they are.
    void wrongPictures()
    {
        QFETCH(bool, eigenvalues);
        QFETCH(QStringList, cells);
        QFETCH(bool, log);
        QFETCH(QString, series);
        QFETCH(QString, note);
        const BlockText text = blockOf(eigenvalues, cells);
        BlockPlot::Setup setup;
        setup.kind = eigenvalues ? BlockPlot::Setup::Points : BlockPlot::Setup::Lines;
        setup.yColumn = eigenvalues ? 2 : -1;
        setup.logY = log;
        setup.splitRuns = !eigenvalues;
        BlockPlot plot(text, blockLayouts[eigenvalues ? 6 : 7], setup);
        plot.resize(500, 400);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        QStringList got;
        for (QAbstractSeries* each : plot.chart()->series()) {
            const auto* xy = static_cast<QXYSeries*>(each);
            got << QString("%1:%2").arg(xy->name()).arg(xy->points().size());
            for (const QPointF& p : xy->points())
                for (auto [axis, v] : {std::pair(axisOf(&plot, Qt::Horizontal), p.x()),
                                       std::pair(axisOf(&plot, Qt::Vertical), p.y())}) {
                    const double low = axis->property("min").toDouble();
                    const double high = axis->property("max").toDouble();
                    QVERIFY(std::isfinite(low) && std::isfinite(high) && low <= v && v <= high);
                }
        }
        QCOMPARE(got.join('|'), series);
        QCOMPARE(plot.chartView()->isVisible(), !series.isEmpty());
        QVERIFY2(note.isEmpty() ? plot.note().isEmpty() : plot.note().contains(note),
                 qPrintable(plot.note()));
    }

    // Each of body 1's 4,812 nodes shows where it is: markers do not paint
    // over their neighbours. Across and up have one scale.
    void denseProjection()
    {
        SamplePage page(4, true, {900, 600}, "vehicle.MASTER");
        QVERIFY(page.plot);
        page.plot->setChoice(1); // x-z: three rows of nodes
        const QImage image = page.plot->chartView()->grab().toImage();
        QSet<quint64> pixels;
        int marked = 0;
        const BlockColumns columns(page.page->textView()->blockText(), blockLayouts[3]);
        for (qsizetype line = 0; line < columns.lineCount(); ++line) {
            double x, y;
            QVERIFY(columns.number(line, 1, x) && columns.number(line, 3, y));
            const QPoint at = onView(page.plot, {x, y}) * image.devicePixelRatio();
            if (!pixels.contains(quint64(at.x()) << 32 | quint32(at.y()))) {
                pixels.insert(quint64(at.x()) << 32 | quint32(at.y()));
                marked += QColor(image.pixel(at)).saturation() > 60; // not ground or grid
            }
        }
        QCOMPARE_GE(marked, pixels.size() * 95 / 100);
        const auto at = [&](QPointF p) { return page.plot->chart()->mapToPosition(p); };
        const double across = at({1, 0}).x() - at({0, 0}).x();
        const double up = at({0, 0}).y() - at({0, 1}).y();
        QVERIFY2(std::abs(across - up) < 0.01 * across,
                 qPrintable(QString("%1 %2").arg(across).arg(up)));
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

        const QPoint from = onView(&plot, {1500, 0.5}), to = onView(&plot, {1700, -0.5});
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        QTest::mouseMove(viewport, to);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
        const auto [b0, b1] = xRange();
        const double pixel = (w1 - w0) / plot.chart()->plotArea().width();
        QVERIFY(std::abs(b0 - 1500) < 2 * pixel && std::abs(b1 - 1700) < 2 * pixel);
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

    // The keyboard zooms and pans, ranges typed in are shown, and a click on
    // a legend entry hides its mode and shows it again.
    void keysRangesLegend()
    {
        SamplePage page(8);
        QVERIFY(page.plot);
        const auto xRange = [&] {
            const auto* axis = static_cast<QValueAxis*>(axisOf(page.plot, Qt::Horizontal));
            return std::make_pair(axis->min(), axis->max());
        };
        const auto [x0, x1] = xRange();
        const double w = x1 - x0;
        BlockChartView* view = page.plot->chartView();
        QTest::keyClick(view, Qt::Key_Plus);
        auto [z0, z1] = xRange();
        QVERIFY(std::abs((z1 - z0) * 1.25 - w) < 1e-6 * w);
        QTest::keyClick(view, Qt::Key_Right);
        QVERIFY(std::abs(xRange().first - z0 - 0.1 * (z1 - z0)) < 1e-6 * w);
        QTest::keyClick(view, Qt::Key_0);
        QCOMPARE(xRange(), std::make_pair(x0, x1));

        DialogAnswerer answers;
        answers.handleDialog([](QWidget* dialog) {
            dialog->findChild<QLineEdit*>("ID from")->setText("10");
            dialog->findChild<QLineEdit*>("ID to")->setText("2.5e1");
            QMetaObject::invokeMethod(dialog, "accept");
        });
        page.plot->findChild<QPushButton*>("axis ranges")->click();
        QVERIFY(answers.unexpected().isEmpty());
        QCOMPARE(xRange(), std::make_pair(10.0, 25.0));

        QLegendMarker* marker = page.plot->chart()->legend()->markers().value(1);
        for (bool shown : {false, true}) {
            emit marker->clicked();
            QCOMPARE(seriesOf(page.plot, 1)->isVisible(), shown);
        }
    }

    // At the browser's 600 by 300 no label is cut short, and each axis has
    // one label format; IDs are whole numbers.
    void readableSmall_data()
    {
        QTest::addColumn<int>("block");
        QTest::addColumn<QString>("formats"); // of the labels: across|up
        QTest::newRow("Mode Shapes") << 8 << "%.0f|%.1f";
        QTest::newRow("Eigenvalues") << 7 << "%.0f|%.0e";
        QTest::newRow("Nodal Coordinates") << 4 << "%.0f|%.0f";
    }

    void readableSmall()
    {
        QFETCH(int, block);
        QFETCH(QString, formats);
        SamplePage page(block, true, {600, 300});
        QVERIFY(page.plot);
        for (QGraphicsItem* item : page.plot->chartView()->scene()->items())
            if (auto* label = dynamic_cast<QGraphicsTextItem*>(item))
                QVERIFY2(!label->toPlainText().contains("..."), qPrintable(label->toPlainText()));
        QCOMPARE(axisOf(page.plot, Qt::Horizontal)->property("labelFormat").toString() + "|" +
                     axisOf(page.plot, Qt::Vertical)->property("labelFormat").toString(),
                 formats);
    }

    // The switch reads as one choice of three and comes before the view; an
    // assistive tool's Toggle switches as a click does. The plot is a
    // graphic named after what it shows.
    void assistiveTools()
    {
        SamplePage page(7, false);
        const auto face = [](QObject* o) { return QAccessible::queryAccessibleInterface(o); };
        for (auto view : {BlockPage::Text, BlockPage::Table, BlockPage::Plot})
            QCOMPARE(face(page.page->switchButton(view))->role(), QAccessible::RadioButton);
        face(page.page->switchButton(BlockPage::Plot))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(page.page->currentView(), BlockPage::Plot);
        QVERIFY(page.page->plot() && page.page->plot()->isVisible());
        QWidget* w = page.page->switchButton(BlockPage::Text);
        while (w != page.page->textView() && w != page.page->plot()->chartView())
            w = w->nextInFocusChain();
        QCOMPARE(w, page.page->textView());
        QAccessibleInterface* plot = face(page.page->plot()->chartView());
        QCOMPARE(plot->role(), QAccessible::Graphic);
        QCOMPARE(plot->text(QAccessible::Name), "Plot of Hertz over Mode");
        QVERIFY2(plot->text(QAccessible::Description).contains("1 series, 16 points"),
                 qPrintable(plot->text(QAccessible::Description)));
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
        QTest::newRow("menu, PDF")       << "Save as PDF…" << "plot"     << "plot.pdf";
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
        if (file.endsWith(".pdf"))
            QVERIFY(bytes.startsWith("%PDF"));
        else if (file.endsWith(".svg"))
            QVERIFY(bytes.contains("<svg") && bytes.contains("<title>Hertz over Mode</title>"));
        else
            QCOMPARE(QImage::fromData(bytes, "PNG").size(),
                     page.plot->chartView()->size() * page.plot->devicePixelRatio());
    }
};

QTEST_MAIN(TestBlockPlot)
#include "test_blockplot.moc"
