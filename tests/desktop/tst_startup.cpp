#include "tests/desktop/desktop.h"
#include "tests/desktop/program.h"
#include "tests/device/device.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString title = QStringLiteral("About this thin client");

/// Takes its time, and then tells whether the program's window can be seen and which files are open.
const QByteArray look = "sleep 0.3\n"
                        "window=hidden\n"
                        "xwininfo -name 'About this thin client' 2>&1 | grep -q IsViewable && window=shown\n"
                        "echo \"${0##*/} $window\" >>\"$SYSINFO_RIG/looks\"\n"
                        "ls -l /proc/$$/fd >>\"$SYSINFO_RIG/descriptors\"\n";

QStringList linesOf(const char *name)
{
    QFile file(qEnvironmentVariable("SYSINFO_RIG") + QLatin1Char('/') + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// Whether more is to be seen of a window than its background.
bool isFilled(const QImage &picture)
{
    QSet<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, y));
    }
    return colors.size() > 10;
}

} // namespace

/// How the built program starts: the order, told by slow tools that look at the screen when they are run, and
/// what it loads.
class tst_StartUp : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void fillsEveryPageInTheOrderOfTheTabsBeforeItIsSeen();
    void loadsNoImageFormats();
    void loadsOneFont();

private:
    QByteArray mappedFiles();

    std::unique_ptr<Desktop> m_desktop;
};

void tst_StartUp::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(!m_desktop->display().isEmpty());
}

void tst_StartUp::cleanup()
{
    Device::restore();
}

void tst_StartUp::fillsEveryPageInTheOrderOfTheTabsBeforeItIsSeen()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"), look + "echo 2.6.35");
    Device::installTool(QStringLiteral("/usr/sbin/route"), look);
    Device::installTool(QStringLiteral("/usr/bin/awk"),
                        "case $1 in */nameserver/*) " + look + ";; esac\nexec mawk \"$@\"");
    Device::installTool(QStringLiteral("/usr/bin/dpkg-query"), look);
    Device::installTool(QStringLiteral("/usr/bin/ovpkg"), look);

    const QTemporaryDir runtimeDirectory;
    Program program(*m_desktop, runtimeDirectory.path());
    program.launch();
    const quint32 window = m_desktop->waitForWindow(title, 30000);
    QVERIFY(window != 0);
    // The first call of each is the start; the pages run some of them again as time goes by.
    const QStringList looks = linesOf("looks");
    const QStringList start{QStringLiteral("uname hidden"),      QStringLiteral("route hidden"),
                            QStringLiteral("awk hidden"),        QStringLiteral("awk hidden"),
                            QStringLiteral("dpkg-query hidden"), QStringLiteral("ovpkg hidden")};
    QCOMPARE(looks.mid(0, start.size()), start);

    m_desktop->closeByWindowManager(window);
    QVERIFY(program.waitForFinished(30000));
    QCOMPARE(program.exitCode(), 0);

    // The tools get neither the lock nor a connection; what this test was started with goes to everybody.
    QStringList own;
    const QFileInfoList ownFiles =
        QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::System | QDir::Files);
    for (const QFileInfo &file : ownFiles)
        own.append(file.symLinkTarget().section(QLatin1Char('/'), -1));
    const QStringList open = linesOf("descriptors").filter(QStringLiteral(" -> "));
    QVERIFY(open.size() >= 3 * start.size());
    const QRegularExpression kept(QStringLiteral(" -> .*(socket:.*|anon_inode:.*|\\.lock)$"));
    for (const QString &line : open) {
        const QRegularExpressionMatch match = kept.match(line);
        QVERIFY2(!match.hasMatch() || own.contains(match.captured(1)), qPrintable(line));
    }
}

/// Those of the program when its window has been painted and for a moment afterwards, a line for each piece.
QByteArray tst_StartUp::mappedFiles()
{
    const QTemporaryDir runtimeDirectory;
    Program program(*m_desktop, runtimeDirectory.path());
    program.launch();
    const quint32 window = m_desktop->waitForWindow(title, 30000);
    const bool isPainted = QTest::qWaitFor([&] { return isFilled(m_desktop->picture(window)); }, 30000);
    QTest::qWait(500);
    QFile maps(QStringLiteral("/proc/%1/maps").arg(program.processId()));
    return isPainted && maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
}

void tst_StartUp::loadsNoImageFormats()
{
    QStringList formats;
    for (const QString &path : QCoreApplication::libraryPaths())
        formats += QDir(path + QStringLiteral("/imageformats")).entryList({QStringLiteral("*.so")});
    QVERIFY(!formats.isEmpty());

    const QByteArray files = mappedFiles();
    QVERIFY(files.contains("/platforms/"));
    QVERIFY(!files.contains("/imageformats/"));
}

void tst_StartUp::loadsOneFont()
{
    // The bold one of the lists and the one of the log are for tabs that nobody has opened yet.
    QSet<QByteArray> fonts;
    const QList<QByteArray> lines = mappedFiles().split('\n');
    for (const QByteArray &line : lines) {
        for (const char *ending : {".ttf", ".ttc", ".otf", ".pfb", ".pcf.gz"}) {
            if (line.endsWith(ending))
                fonts.insert(line.mid(line.indexOf('/')));
        }
    }
    QCOMPARE(fonts.size(), 1);
}

QTEST_GUILESS_MAIN(tst_StartUp)
#include "tst_startup.moc"
