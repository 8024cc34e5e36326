#include "pages/software/packagelist.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

namespace {

/// The rows on one line: fields between "|", rows between " / ".
QString joined(const std::vector<PackageRow> &rows)
{
    QStringList lines;
    for (const PackageRow &row : rows)
        lines.append(QStringList(row.cbegin(), row.cend()).join(QLatin1Char('|')));
    return lines.join(QLatin1String(" / "));
}

/// The only row of the output.
QStringList onlyRow(const QByteArray &output)
{
    const std::vector<PackageRow> rows = packageRows(output);
    return rows.size() == 1 ? QStringList(rows.front().cbegin(), rows.front().cend()) : QStringList();
}

} // namespace

class tst_PackageList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void packageQueryArguments_data();
    void packageQueryArguments();
    void packageRows_data();
    void packageRows();
    void fieldsEndAtUnicodeWhiteSpace_data();
    void fieldsEndAtUnicodeWhiteSpace();
    void addonRows_data();
    void addonRows();
};

void tst_PackageList::packageQueryArguments_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("arguments");

    const auto row = [](const char *name, const QByteArray &file, const QList<const char *> &names) {
        QStringList arguments{QStringLiteral("-W")};
        for (const char *argument : names)
            arguments.append(QString::fromLatin1(argument));
        QTest::newRow(name) << file << arguments;
    };
    row("empty file", "", {});
    row("one name, no newline", "bash", {"bash"});
    row("a final newline adds an empty name", "bash\n", {"bash", ""});
    row("two names", "bash\ncoreutils\n", {"bash", "coreutils", ""});
    row("file order", "zsh\nbash", {"zsh", "bash"});
    row("the same name twice", "bash\nbash", {"bash", "bash"});
    row("blank lines", "\nbash\n\n\ncoreutils", {"", "bash", "", "", "coreutils"});
    row("a newline alone", "\n", {"", ""});
    row("a blank alone", " ", {" "});
    row("blanks are kept", " bash \t\n", {" bash \t", ""});
    row("DOS line ends", "bash\r\nzsh\r\n", {"bash\r", "zsh\r", ""});
    row("several names on a line", "bash zsh\n", {"bash zsh", ""});
    row("a comment is a name", "# all of them\n", {"# all of them", ""});
    row("a pattern", "linux-image-*\n", {"linux-image-*", ""});
    row("an option", "-f=${Package}\n", {"-f=${Package}", ""});
    row("Latin-1", "caf\xe9\n", {"caf\xe9", ""});
    row("UTF-8 is read as Latin-1", "\xc3\xa9", {"\xc3\xa9"});
    row("up to the first zero byte", QByteArray("bash\nz\0sh\ncoreutils\n", 19), {"bash", "z"});
    row("a zero byte first", QByteArray("\0bash\n", 6), {});
}

void tst_PackageList::packageQueryArguments()
{
    QFETCH(QByteArray, file);
    QTEST(::packageQueryArguments(file), "arguments");
}

void tst_PackageList::packageRows_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QString>("rows");

    const auto row = [](const char *name, const QByteArray &output, const char *rows) {
        QTest::newRow(name) << output << QString::fromLatin1(rows);
    };
    row("no output", "", "");
    row("a newline alone", "\n", "");
    row("lines of white space", " \n\t\n \t \r\n", "");
    row("name and version", "bash\t5.2.15-2+b8\n", "bash|5.2.15-2+b8");
    row("no newline at the end", "bash\t5.2.15-2+b8", "bash|5.2.15-2+b8");
    row("order of the output", "zsh\t5.9\nbash\t5.2\nzsh\t5.9\n", "zsh|5.9 / bash|5.2 / zsh|5.9");
    row("blanks around and a run of blanks between", "   bash     5.2   \n", "bash|5.2");
    row("blanks around and a tab between", " \tbash\t5.2\t \n", "bash|5.2");
    row("blanks and tabs mixed", "bash \t \t 5.2\n", "bash|5.2");
    row("no version", "libc6-amd64\t\n", "libc6-amd64");
    row("three fields", "bash 5.2 installed\n", "bash|5.2|installed");
    row("six fields", "a b c d e f\n", "a|b|c|d|e|f");
    row("rows of different lengths", "a\nb 1 x\nc 2\n", "a / b|1|x / c|2");
    row("a name with its architecture", "libc6:amd64\t2.36-9+deb12u14\n", "libc6:amd64|2.36-9+deb12u14");
    row("an epoch", "bind9-host\t1:9.18.49-1~deb12u3\n", "bind9-host|1:9.18.49-1~deb12u3");
    row("blank lines between", "a 1\n\n\nb 2\n", "a|1 / b|2");
    row("DOS line ends", "a\t1\r\nb\t2\r\n", "a|1 / b|2");
    row("a carriage return parts fields", "a\r1\n", "a|1");
    row("form feed and vertical tab", "a\f1\vx\n", "a|1|x");
    row("markup", "<b>bash</b>\t<i>5</i>\n", "<b>bash</b>|<i>5</i>");
    row("Latin-1", "caf\xe9\t1\n", "caf\xe9|1");
    row("UTF-8 is read as Latin-1", "\xc3\xa9\t1\n", "\xc3\xa9|1");
    row("up to the first zero byte", QByteArray("a\t1\nb\t2\0 3\nc\t4\n", 15), "a|1 / b|2");
    row("a zero byte first", QByteArray("\0a\t1\n", 5), "");
    const QByteArray longName(5000, 'n');
    row("a name of 5000 characters", longName + "\t1\n", (longName + "|1").constData());
}

void tst_PackageList::packageRows()
{
    QFETCH(QByteArray, output);
    const std::vector<PackageRow> rows = ::packageRows(output);
    QTEST(joined(rows), "rows");
    for (const PackageRow &row : rows)
        QVERIFY(std::find(row.cbegin(), row.cend(), QLatin1String()) == row.cend());
}

void tst_PackageList::fieldsEndAtUnicodeWhiteSpace_data()
{
    QTest::addColumn<char>("byte");
    for (int byte = 1; byte <= 255; ++byte) {
        if (byte != '\n')
            QTest::addRow("byte 0x%02x", static_cast<unsigned>(byte)) << static_cast<char>(byte);
    }
}

void tst_PackageList::fieldsEndAtUnicodeWhiteSpace()
{
    QFETCH(char, byte);
    const QString line = QLatin1Char('a') + QString(QLatin1Char(byte)) + QLatin1Char('b');
    const QRegularExpression whiteSpace(QStringLiteral("\\s+"),
                                        QRegularExpression::UseUnicodePropertiesOption);
    QCOMPARE(onlyRow(line.toLatin1()), line.split(whiteSpace));
    const QString surrounded = QString(QLatin1Char(byte)) + QLatin1Char('b') + QLatin1Char(byte);
    QCOMPARE(onlyRow(surrounded.toLatin1()), surrounded.trimmed().split(whiteSpace));
}

void tst_PackageList::addonRows_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QString>("rows");

    const auto row = [](const char *name, const QByteArray &output, const char *rows) {
        QTest::newRow(name) << output << QString::fromLatin1(rows);
    };
    row("no output", "", "");
    row("heading, package, empty line", "The Orvo packages installed:\n  citrix 6.3 \n\n", "citrix 6.3");
    row("the heading alone", "The Orvo packages", "");
    row("the heading after blanks", " \tThe Orvo packages:\na\n", "a");
    row("every heading", "The Orvo packages:\na\nThe Orvo packages again\nb\n", "a / b");
    row("the heading cut short", "The Orvo package\n", "The Orvo package");
    row("the heading in small letters", "the orvo packages:\n", "the orvo packages:");
    row("the heading later in the line", "a The Orvo packages\n", "a The Orvo packages");
    row("no heading", "a\nb\n", "a / b");
    row("no newline at the end", "a\nb", "a / b");
    row("white space inside is kept", "  a \t  6.3-12  x \n", "a \t  6.3-12  x");
    row("lines of white space", "\n \n\t\r\na\n", "a");
    row("DOS line ends", "The Orvo packages:\r\na\r\n", "a");
    row("order of the output", "z\na\nz\n", "z / a / z");
    row("markup", "<b>a</b>\n", "<b>a</b>");
    row("Latin-1", "caf\xe9\n", "caf\xe9");
    row("up to the first zero byte", QByteArray("a\nb\0c\nd\n", 8), "a / b");
    row("a zero byte first", QByteArray("\0a\n", 3), "");
}

void tst_PackageList::addonRows()
{
    QFETCH(QByteArray, output);
    const std::vector<PackageRow> rows = ::addonRows(output);
    QTEST(joined(rows), "rows");
    for (const PackageRow &row : rows)
        QCOMPARE(int(row.size()), 1);
}

QTEST_APPLESS_MAIN(tst_PackageList)
#include "tst_packagelist.moc"
