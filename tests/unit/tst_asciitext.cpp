#include "app/asciitext.h"

#include <QBuffer>
#include <QFile>
#include <QTest>

namespace {

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(QString::fromLatin1(text));
    return result;
}

} // namespace

class tst_AsciiText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsLatin1UpToTheFirstZeroByte_data();
    void readsLatin1UpToTheFirstZeroByte();
    void readsLinesInPieces_data();
    void readsLinesInPieces();
    void readsFilesWithoutSize();
    void spaceIsThatOfQt();
    void trimsAsQtDoes_data();
    void trimsAsQtDoes();
};

void tst_AsciiText::readsLatin1UpToTheFirstZeroByte_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << QByteArray("abc\n") << "abc\n";
    QTest::newRow("empty") << QByteArray("") << "";
    QTest::newRow("Latin-1") << QByteArray("K\xf6ln \xb5") << QString::fromUtf8("K\u00f6ln \u00b5");
    QTest::newRow("bytes that would be UTF-8") << QByteArray("\xc3\xb6") << QString::fromUtf8("\u00c3\u00b6");
    QTest::newRow("zero byte") << QByteArray("ab\0cd", 5) << "ab";
    QTest::newRow("zero byte first") << QByteArray("\0cd", 3) << "";
}

void tst_AsciiText::readsLatin1UpToTheFirstZeroByte()
{
    QFETCH(QByteArray, bytes);
    QTEST(asciiText(bytes), "text");
}

void tst_AsciiText::readsLinesInPieces_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("pieces");

    const QString a1022(1022, QLatin1Char('a'));
    const QString a1023(1023, QLatin1Char('a'));
    QTest::newRow("nothing") << QByteArray() << QStringList();
    QTest::newRow("keeps the newline") << QByteArray("a\nb\n") << lines({"a\n", "b\n"});
    QTest::newRow("last line without newline") << QByteArray("a\nb") << lines({"a\n", "b"});
    QTest::newRow("blank lines are lines") << QByteArray("\n\na") << lines({"\n", "\n", "a"});
    QTest::newRow("1023 bytes with newline")
        << QByteArray(1022, 'a') + "\nb" << QStringList{a1022 + QLatin1Char('\n'), QStringLiteral("b")};
    QTest::newRow("1024 bytes with newline")
        << QByteArray(1023, 'a') + "\nb" << QStringList({a1023}) + lines({"\n", "b"});
    QTest::newRow("three pieces") << QByteArray(2047, 'a') + "\n"
                                  << QStringList({a1023, a1023}) + lines({"a\n"});
    QTest::newRow("zero byte cuts a line only") << QByteArray("a\0x\nb\n", 6) << lines({"a", "b\n"});
    QTest::newRow("line of a zero byte") << QByteArray("\0\nb\n", 4) << lines({"", "b\n"});
}

void tst_AsciiText::readsLinesInPieces()
{
    QFETCH(QByteArray, content);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QStringList pieces;
    while (const std::optional<QString> piece = readLinePiece(buffer))
        pieces.append(*piece);
    QTEST(pieces, "pieces");

    QStringList taken;
    for (auto text = content.cbegin(); text != content.cend();)
        taken.append(takeLinePiece(text, content.cend()));
    QCOMPARE(taken, pieces);
}

void tst_AsciiText::readsFilesWithoutSize()
{
    QFile status(QStringLiteral("/proc/self/status"));
    QVERIFY(status.open(QIODevice::ReadOnly));
    QCOMPARE(status.size(), 0);
    QCOMPARE(readLinePiece(status).value_or(QString()), QStringLiteral("Name:\ttst_asciitext\n"));
}

void tst_AsciiText::spaceIsThatOfQt()
{
    QByteArray space;
    for (int byte = 0; byte < 256; ++byte) {
        if (isSpace(static_cast<char>(byte)))
            space.append(static_cast<char>(byte));
    }
    QCOMPARE(space, QByteArray("\t\n\v\f\r \x85\xa0"));
}

void tst_AsciiText::trimsAsQtDoes_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"", " ", "\t\xa0\n", "a", " a", "a ", "\x85 a \v", " a  b\n", "\n\na\r\n"})
        QTest::newRow(QByteArray(text).toPercentEncoding().constData()) << QByteArray(text);
}

void tst_AsciiText::trimsAsQtDoes()
{
    QFETCH(QByteArray, text);
    QCOMPARE(QString(trimmed(QLatin1String(text))), QString::fromLatin1(text).trimmed());
}

QTEST_APPLESS_MAIN(tst_AsciiText)
#include "tst_asciitext.moc"
