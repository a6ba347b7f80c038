#include "worditer.h"

#include <QTest>

namespace
{

// Reads the protected state the behaviour is defined by.
class Probe : public wordIter
{
public:
    Probe(const QString& text, char delim) : wordIter(text, delim) {}
    int posAt() const { return pos; }
    int firstAt() const { return first; }
    int lastAt() const { return last; }
    size_t lengthAt() const { return length; }
    QString textAt() const { return text; }
    char delimAt() const { return delim; }
};

// current() at the start and after every step that succeeds.
QStringList walk(wordIter& it)
{
    QStringList words{it.current()};
    while (++it)
        words << it.current();
    return words;
}

} // namespace

class TestWordIter : public QObject
{
    Q_OBJECT

private slots:
    void edgeCases_data();
    void edgeCases();
    void wordClasses_data();
    void wordClasses();
    void stepOffLastWordIsFinal();
    void copyAndAssignmentWalkIndependently();
    void setDelimKeepsPosition();
    void failedSearchKeepsEarlierValues();
};

void TestWordIter::edgeCases_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<char>("delim");
    QTest::addColumn<QString>("simplified");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QStringList>("words");
    // The state after the walk, the word toLast() gives on a fresh iterator,
    // and current() after one more step at the end (empty when it fails).
    QTest::addColumn<bool>("validAfter");
    QTest::addColumn<int>("posAfter");
    QTest::addColumn<QString>("lastWord");
    QTest::addColumn<QString>("again");

    const QString no;
    const QStringList none{no};
    QTest::newRow("padded blank words")
        << "  alpha   beta  " << ' ' << "alpha beta" << 0 << 6 << 2 << true
        << QStringList{"alpha", "beta"} << false << 6 << "beta" << no;
    QTest::newRow("doubled comma") << "a,b,,c" << ',' << "a,b,,c" << 0 << 5 << 3 << true
                                   << QStringList{"a", "b", "c"} << false << 5 << "c" << no;
    QTest::newRow("trailing comma") << "a,b," << ',' << "a,b," << 0 << 2 << 2 << true
                                    << QStringList{"a", "b"} << true << -1 << "b"
                                    << "b";
    QTest::newRow("restart skips first word") << "a,b,c," << ',' << "a,b,c," << 0 << 4 << 3 << true
                                              << QStringList{"a", "b", "c"} << true << -1 << "c"
                                              << "b";
    QTest::newRow("leading comma") << ",a" << ',' << ",a" << 1 << 1 << 1 << true << QStringList{"a"}
                                   << false << 1 << "a" << no;
    QTest::newRow("only commas") << ",,," << ',' << ",,," << -1 << -1 << 1 << false << none << false
                                 << -1 << no << no;
    QTest::newRow("one letter") << "a" << ' ' << "a" << 0 << 0 << 1 << true << QStringList{"a"}
                                << false << 0 << "a" << no;
    QTest::newRow("two letters") << "ab" << ' ' << "ab" << 0 << 0 << 1 << true << QStringList{"ab"}
                                 << false << 0 << "ab" << no;
    QTest::newRow("hash skipped") << "#only" << ' ' << "#only" << 1 << 1 << 1 << true
                                  << QStringList{"only"} << false << 1 << "only" << no;
    QTest::newRow("last behind delimiter") << "a,#b" << ',' << "a,#b" << 0 << 2 << 2 << true
                                           << QStringList{"a", "b"} << false << 3 << "#b" << no;
    QTest::newRow("unknown delimiter")
        << "a b" << ';' << "a b" << -1 << -1 << 1 << false << none << false << -1 << no << no;
    QTest::newRow("close bracket") << "x=1 y]2" << ']' << "x=1 y]2" << 0 << 6 << 2 << true
                                   << QStringList{"x=1 y", "2"} << false << 6 << "2" << no;
    QTest::newRow("inner white space") << " a,\tb\n,c " << ',' << "a, b ,c" << 0 << 6 << 3 << true
                                       << QStringList{"a", " b ", "c"} << false << 6 << "c" << no;
    // Past Latin-1 a character comes out as 0; a lone surrogate is just a
    // character that cannot begin a word.
    const QChar nul(0);
    QTest::newRow("beyond Latin-1")
        << "x\u00e9\u20acy ok" << ' ' << "x\u00e9\u20acy ok" << 0 << 5 << 2 << true
        << QStringList{QStringLiteral("x\u00e9%1y").arg(nul), "ok"} << false << 5 << "ok" << no;
    const QString lone = QStringLiteral("a%1b c %2d").arg(QChar(0xd800)).arg(QChar(0xdc00));
    QTest::newRow("lone surrogates") << lone << ' ' << lone << 0 << 6 << 3 << true
                                     << QStringList{QStringLiteral("a%1b").arg(nul), "c", "d"}
                                     << false << 7 << QString(nul) + "d" << no;
    QTest::newRow("surrogate pair") << "\U0001F600x y" << ' ' << "\U0001F600x y" << 2 << 4 << 2
                                    << true << QStringList{"x", "y"} << false << 4 << "y" << no;
    QTest::newRow("empty text") << no << ',' << no << -1 << -1 << 1 << false << none << false << -1
                                << no << no;
    QTest::newRow("white space only")
        << " \t\n " << ' ' << no << -1 << -1 << 1 << false << none << false << -1 << no << no;
}

void TestWordIter::edgeCases()
{
    QFETCH(QString, text);
    QFETCH(char, delim);
    QFETCH(QString, simplified);
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(int, count);
    QFETCH(bool, valid);
    QFETCH(QStringList, words);
    QFETCH(bool, validAfter);
    QFETCH(int, posAfter);
    QFETCH(QString, lastWord);
    QFETCH(QString, again);

    Probe it(text, delim);
    Probe atLast(it);
    atLast.toLast();
    QVERIFY(atLast.atLast());
    QCOMPARE(atLast.current(), lastWord);

    QCOMPARE(it.textAt(), simplified);
    QCOMPARE(it.lengthAt(), size_t(simplified.size()));
    QCOMPARE(it.delimAt(), delim);
    QCOMPARE(it.firstAt(), first);
    QCOMPARE(it.lastAt(), last);
    QCOMPARE(it.count(), size_t(count));
    QCOMPARE(it.isValid(), valid);
    QVERIFY(it.atFirst());
    QCOMPARE(walk(it), words);
    QCOMPARE(it.isValid(), validAfter);
    QCOMPARE(it.posAt(), posAfter);
    QCOMPARE(it.count(), size_t(count));
    if (!it.isValid())
        QVERIFY(it.atFirst() && it.atLast() && it.current().isEmpty());
    QCOMPARE(++it ? it.current() : QString(), again);
}

void TestWordIter::wordClasses_data()
{
    QTest::addColumn<char>("delim");
    QTest::addColumn<QString>("starters");

    // Every class holds this set less its own delimiter.
    const QString all = QStringLiteral(" !,.=:*()-[]/${}_abcdefghijklmnopqrstuvwxyz"
                                       "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
    for (char d : QByteArray(" (),./:=[]")) {
        QString starters = all;
        starters.remove(QLatin1Char(d));
        if (d == ']')
            starters.remove(QLatin1Char('='));
        QTest::addRow("'%c'", d) << d << starters;
    }
    for (char d : QByteArray(";#a\t\xe9"))
        QTest::addRow("unknown %d", int(uchar(d))) << d << QString();
    QTest::newRow("unknown nul") << '\0' << QString();
}

void TestWordIter::wordClasses()
{
    QFETCH(char, delim);
    QFETCH(QString, starters);
    const QString d(QLatin1Char{delim});

    for (ushort u = 0x20; u < 0x7f; ++u) {
        const QChar c(u);
        if (c == QLatin1Char(' ') && delim == ' ')
            continue; // simplified away
        // The second word starts at c when c can begin one, else at z.
        Probe it(QStringLiteral("q") + d + c + QStringLiteral("z"), delim);
        ++it;
        QVERIFY2((it.posAt() == 2) == starters.contains(c), qPrintable(QString(c)));
    }

    wordIter it(QStringLiteral("a%1b%1%1c").arg(d), delim);
    QCOMPARE(it.isValid(), !starters.isEmpty());
    QCOMPARE(it.count(), size_t(it.isValid() ? 3 : 1));
    if (it.isValid())
        QCOMPARE(walk(it), (QStringList{"a", "b", "c"}));
}

void TestWordIter::stepOffLastWordIsFinal()
{
    Probe it(QStringLiteral("alpha beta"), ' ');
    QVERIFY(++it);
    QVERIFY(!++it);
    it.toFirst();
    QCOMPARE(it.posAt(), 0);
    QVERIFY(it.current().isEmpty() && it.atLast() && !it.isValid());
    it.toLast();
    QCOMPARE(it.posAt(), 6);
    QVERIFY(it.current().isEmpty() && it.atFirst() && !it.isValid());
    QVERIFY(!++it);
}

void TestWordIter::copyAndAssignmentWalkIndependently()
{
    Probe a(QStringLiteral("one two three"), ' ');
    QVERIFY(++a);
    Probe b(a);
    QCOMPARE(walk(b), (QStringList{"two", "three"}));
    QVERIFY(!b.isValid());
    QVERIFY(a.isValid());
    QCOMPARE(a.current(), QStringLiteral("two"));

    Probe c(QStringLiteral("x,y"), ',');
    c = a;
    QCOMPARE(c.delimAt(), ' ');
    QCOMPARE(c.lastAt(), 8);
    QVERIFY(++c);
    QCOMPARE(a.current(), QStringLiteral("two"));

    // Assignment is the way back from the invalid state.
    b = a;
    QCOMPARE(walk(b), (QStringList{"two", "three"}));
    QCOMPARE(walk(a), (QStringList{"two", "three"}));
}

void TestWordIter::setDelimKeepsPosition()
{
    Probe it(QStringLiteral("a,b c,d"), ',');
    QVERIFY(++it);
    QCOMPARE(it.current(), QStringLiteral("b c"));

    it.setDelim(' ');
    QCOMPARE(it.posAt(), 2);
    QCOMPARE(it.current(), QStringLiteral("b"));
    QCOMPARE(it.firstAt(), 0);
    QCOMPARE(it.lastAt(), 4);
    QCOMPARE(it.count(), size_t(2));
    QVERIFY(++it);
    QCOMPARE(it.current(), QStringLiteral("c,d"));

    // Only construction makes an iterator valid.
    it.setDelim(';');
    QVERIFY(!it.isValid());
    QCOMPARE(it.posAt(), 4);
    it.setDelim(',');
    QVERIFY(!it.isValid());
}

void TestWordIter::failedSearchKeepsEarlierValues()
{
    Probe commas(QStringLiteral(",,,"), '.');
    QCOMPARE(commas.current(), QStringLiteral(",,,"));
    commas.setDelim(',');
    QVERIFY(!commas.isValid());
    QCOMPARE(commas.firstAt(), 0);
    QCOMPARE(commas.lastAt(), 0);

    // The first search runs and finds nothing (-1); the last one gives up.
    Probe words(QStringLiteral("a,b"), ',');
    words.setDelim(';');
    QCOMPARE(words.firstAt(), -1);
    QCOMPARE(words.lastAt(), 2);
}

QTEST_APPLESS_MAIN(TestWordIter)
#include "test_worditer.moc"
