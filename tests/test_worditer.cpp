#include "worditer_probe.h"

#include <QTest>

using L = QStringList;

// current() at the start and after every step that succeeds, marked "<" where
// atFirst() holds and ">" where atLast() does.
static L walk(wordIter& it)
{
    L words;
    do
        words << (it.atFirst() ? "<" : "") + it.current() + (it.atLast() ? ">" : "");
    while (++it);
    return words;
}

class TestWordIter : public QObject
{
    Q_OBJECT

private slots:
    void edgeCases_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<char>("delim");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<L>("words"); // as many as count() gives

        QTest::newRow("padded") << "  alpha   beta  " << ' ' << 0 << 6 << L{"<alpha", "beta>"};
        QTest::newRow("doubled ,") << "a,b,,c" << ',' << 0 << 5 << L{"<a", "b", "c>"};
        QTest::newRow("leading ,") << ",a" << ',' << 1 << 1 << L{"<a>"};
        QTest::newRow("only ,") << ",,," << ',' << -1 << -1 << L{"<>"};
        QTest::newRow("two letters") << "ab" << ' ' << 0 << 0 << L{"<ab>"};
        QTest::newRow("last behind ,") << "a,#b" << ',' << 0 << 2 << L{"<a", "b"};
        QTest::newRow("unknown delimiter") << "a b" << ';' << -1 << -1 << L{"<>"};
        QTest::newRow("]") << "x=1 y]2" << ']' << 0 << 6 << L{"<x=1 y", "2>"};
        QTest::newRow("inner space") << " a,\tb\n,c " << ',' << 0 << 6 << L{"<a", " b ", "c>"};
        // Past Latin-1 current() gives 0; neither a lone surrogate nor a pair begins a word.
        QTest::newRow("beyond Latin-1")
            << QStringLiteral("x\u00e9\u20ac%1 %2y \U0001F600z").arg(QChar(0xd800), QChar(0xdc00))
            << ' ' << 0 << 8 << L{QStringLiteral("<x\u00e9%1%1").arg(QChar(0)), "y", "z"};
        const QString gap(70, QLatin1Char('#'));
        QTest::newRow("hashes skipped")
            << gap + "a " + gap + "b" + gap << ' ' << 70 << 72 << L{"<a", "b" + gap};
        QTest::newRow("empty") << QString() << ',' << -1 << -1 << L{"<>"};
        QTest::newRow("white space only") << " \t\n " << ' ' << -1 << -1 << L{"<>"};
    }

    void edgeCases()
    {
        QFETCH(QString, text);
        QFETCH(char, delim);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(L, words);

        Probe it(text, delim);
        QCOMPARE(it.state(), (QList<int>{first, first, last}));
        QCOMPARE(walk(it), words);
        QVERIFY(!it.isValid() && it.current().isEmpty() && it.atFirst() && it.atLast());
        QCOMPARE(it.count(), size_t(words.size()));
        it.toLast();
        QCOMPARE(it.state(), (QList<int>{last, first, last}));
    }

    void wordClasses_data()
    {
        QTest::addColumn<char>("delim");
        QTest::addColumn<QString>("starters");

        // Every class holds this set less its delimiter, and that of ] also less =.
        const QString all = QStringLiteral(" !,.=:*()-[]/${}_abcdefghijklmnopqrstuvwxyz"
                                           "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
        for (QByteArray d : {" ", "(", ")", ",", ".", "/", ":", "=", "[", "]="}) {
            QString starters = all;
            for (char c : d)
                starters.remove(QLatin1Char(c));
            QTest::addRow("'%c'", d[0]) << d[0] << starters;
        }
        QTest::newRow("unknown ;") << ';' << QString();
        QTest::newRow("unknown 0xe9") << '\xe9' << QString();
    }

    void wordClasses()
    {
        QFETCH(char, delim);
        QFETCH(QString, starters);

        // Latin-1 less what simplified() drops, and letters that fold to ASCII
        // ones when case is ignored.
        QString chars = QStringLiteral("\u017f\u212a\uff21");
        for (ushort u = 0x20; u <= 0xff; ++u)
            if (!QChar(u).isSpace() || (u == ' ' && delim != ' '))
                chars += QChar(u);
        for (QChar c : std::as_const(chars)) {
            // The second word starts at c when c can begin one, else later.
            Probe it(QStringLiteral("q%1%2z").arg(QChar::fromLatin1(delim), c), delim);
            ++it;
            QVERIFY2((it.posAt() == 2) == starters.contains(c), qPrintable(QString(c)));
        }
    }

    void validity()
    {
        // Behind a trailing delimiter there is no word, yet the iterator stays
        // valid, and the next step starts again at index 0.
        Probe it(QStringLiteral("a,b,c,"), ',');
        QCOMPARE(walk(it), (L{"<a", "b", "c>"}));
        QCOMPARE(it.posAt(), -1);
        QCOMPARE(walk(it), (L{"", "b", "c>"}));

        // The step off the last word leaves pos and is final, but later steps move.
        Probe ab(QStringLiteral("a b c"), ' ');
        QVERIFY(++ab);
        Probe copy(ab), other(QStringLiteral("x,y"), ';');
        QCOMPARE(walk(ab), (L{"b", "c>"}));
        QCOMPARE(ab.posAt(), 4);
        ab.toFirst();
        QCOMPARE(walk(ab), (L{"<>", "<>", "<>"}));

        // Only assignment brings it back. Copies walk on their own.
        other = ab = copy;
        for (wordIter* w : {&other, &ab, &copy})
            QCOMPARE(walk(*w), (L{"b", "c>"}));
    }

    void setDelimKeepsPosition()
    {
        Probe it(QStringLiteral("a,b c,d"), ',');
        QVERIFY(++it);
        it.setDelim(' ');
        QCOMPARE(it.state(), (QList<int>{2, 0, 4}));
        QCOMPARE(walk(it), (L{"b", "c,d>"}));

        // Only construction makes an iterator valid. The search for the first
        // word runs and finds nothing; the one for the last gives up.
        it.setDelim(';');
        QCOMPARE(it.state(), (QList<int>{4, -1, 4}));
        it.setDelim(',');
        QVERIFY(!it.isValid());

        // Both searches give up on text of nothing but delimiters.
        Probe commas(QStringLiteral(",,,"), '.');
        commas.setDelim(',');
        QVERIFY(!commas.isValid());
        QCOMPARE(commas.state(), (QList<int>{0, 0, 0}));
    }
};

QTEST_APPLESS_MAIN(TestWordIter)
#include "test_worditer.moc"
