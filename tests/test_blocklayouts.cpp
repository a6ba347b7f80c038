// The layout of each block's report, held against the documented format
// itself, not against the stand-in's copy of the same numbers.
#include "blocklayouts.h"

#include <QTest>

class TestBlockLayouts : public QObject
{
    Q_OBJECT

private slots:
    void layout_data()
    {
        QTest::addColumn<int>("headerLines");
        QTest::addColumn<QString>("widths"); // one per column, blank-separated
        QTest::addColumn<QString>("titles"); // "|"-separated, empty: none
        // clang-format off
        QTest::newRow("1 Version code")               << 9  << "30"                   << "";
        QTest::newRow("2 Header")                     << 9  << "50"                   << "";
        QTest::newRow("3 Content Summary")            << 9  << "25 6 10"              << "";
        QTest::newRow("4 Nodal Coordinates")          << 9  << "5 18 18 18"           << "";
        QTest::newRow("5 none")                       << 0  << ""                     << "";
        QTest::newRow("6 Global Body Properties")     << 9  << "20 12 12 12"          << "";
        QTest::newRow("7 Eigenvalues")                << 8  << "5 18 18 18 18 18"
            << "Mode|Eigenvalue|Hertz|Radians|Gen. Mass|Gen. Stiff";
        QTest::newRow("8 Mode Shapes")                << 9  << "5 18 18 18 18 18 18"
            << "ID|dx|dy|dz|ax|ay|az";
        QTest::newRow("9 Nodal Masses")               << 9  << "5 18"                 << "";
        QTest::newRow("10 Nodal Inertias")            << 9  << "30 20 18 18 18"       << "";
        QTest::newRow("11 Units")                     << 9  << "30"                   << "";
        QTest::newRow("12 Generalized Stiffness")     << 9  << "7 7 18"               << "";
        QTest::newRow("13 Generalized Mass")          << 9  << "7 7 18"               << "";
        QTest::newRow("14 Element Faces")             << 11 << "7 7 7 7 7"            << "";
        QTest::newRow("15 Generalized Damping")       << 9  << "50"                   << "";
        QTest::newRow("16 Mode Shape Transformation") << 11 << "14 14 14 14 14 14"    << "";
        QTest::newRow("17 Interface Nodes")           << 9  << "5 7"                  << "";
        QTest::newRow("18 Stress Modes")              << 9  << "5 18 18 18 18 18 18"
            << "ID|Sigma X|Sigma Y|Sigma Z|Tau XY|Tau XZ|Tau YZ";
        for (const int n : {1, 2, 3, 4, 5, 7, 8, 9}) // no Invariants 6
            QTest::addRow("%d Invariants %d", n + 18 - (n > 6), n) << 9 << "20" << "";
        QTest::newRow("27 Preloads")                  << 9  << "5 20"                 << "";
        QTest::newRow("28 Modal Loads")               << 9  << "5 30"                 << "";
        QTest::newRow("29 Strain Modes")              << 9  << "5 18 18 18 18 18 18"
            << "ID|Epsilon X|Epsilon Y|Epsilon Z|Gamma XY|Gamma XZ|Gamma YZ";
        // clang-format on
    }

    // Every field of the row, the zeros and nulls behind the last column too.
    void layout()
    {
        QFETCH(int, headerLines);
        QFETCH(QString, widths);
        QFETCH(QString, titles);
        const int block = QString(QTest::currentDataTag()).section(' ', 0, 0).toInt();
        QCOMPARE(blockLayoutCount, 29);
        const BlockLayout& row = blockLayouts[block - 1];
        const QStringList width = widths.split(' ', Qt::SkipEmptyParts);
        const QStringList title = titles.split('|', Qt::SkipEmptyParts);
        QCOMPARE(row.headerLines, headerLines);
        QCOMPARE(row.columnCount, int(width.size()));
        for (int column = 0; column < 7; ++column) {
            QCOMPARE(row.columnWidths[column], width.value(column, "0").toInt());
            QCOMPARE(QString::fromLatin1(row.columnTitles[column]), title.value(column));
            QCOMPARE(row.columnTitles[column] == nullptr, column >= title.size());
        }
    }
};

QTEST_GUILESS_MAIN(TestBlockLayouts)
#include "test_blocklayouts.moc"
