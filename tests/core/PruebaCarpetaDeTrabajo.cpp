#include "core/CarpetaDeTrabajo.h"
#include "core/CarpetaPrivada.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

bool escribir(const QString &nombre)
{
    QDir().mkpath(QFileInfo(nombre).path());
    QFile fichero(nombre);
    return fichero.open(QIODevice::WriteOnly) && fichero.write("importante") > 0;
}

mode_t modo(const QString &ruta)
{
    struct stat ficha = {};
    return lstat(QFile::encodeName(ruta).constData(), &ficha) == 0 ? ficha.st_mode & 0777U : 0;
}

QStringList enLaRaiz()
{
    return QDir(CarpetaPrivada::enLaCache(u"trabajo"_s)).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

/// Working folders against links, other users, other programs and sudden ends.
class PruebaCarpetaDeTrabajo : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CACHE_HOME", QFile::encodeName(casa->filePath(u"cache"_s)));
        qputenv("TMPDIR", QFile::encodeName(casa->filePath(u"tmp"_s)));
        QVERIFY(QDir().mkpath(casa->filePath(u"tmp"_s)));
        documentos = casa->filePath(u"Documentos"_s);
        QVERIFY(escribir(documentos + u"/tesis.odt"_s));
    }
    void cleanup() { QVERIFY(QFile::exists(documentos + u"/tesis.odt"_s)); }
    void privadaYPropia();
    void seVaEntera();
    void unEnlaceEnSuSitio();
    void deOtraPersona();
    void losMuertosYLosVivos();
    void nombresDeAntes();
    void seCierraALosDemas();

private:
    std::unique_ptr<QTemporaryDir> casa;
    QString documentos;
};

void PruebaCarpetaDeTrabajo::privadaYPropia()
{
    const auto antes = umask(0);
    auto una = CarpetaDeTrabajo::nueva();
    const auto otra = CarpetaDeTrabajo::nueva(casa->filePath(u"Vellora/Mis datos"_s));
    umask(antes);
    QVERIFY(una && otra);
    QVERIFY(una->ruta() != otra->ruta());
    for (const auto &ruta : {una->ruta(), CarpetaPrivada::enLaCache(), CarpetaPrivada::enLaCache(u"trabajo"_s)})
        QCOMPARE(modo(ruta), mode_t(S_IRWXU));
    // One that was open to everybody is closed.
    QCOMPARE(chmod(QFile::encodeName(CarpetaPrivada::enLaCache()).constData(), 0777), 0);
    QVERIFY(CarpetaDeTrabajo::nueva());
    QCOMPARE(modo(CarpetaPrivada::enLaCache()), mode_t(S_IRWXU));
    const auto ruta = una->ruta();
    {
        const CarpetaDeTrabajo movida(*std::move(una));
        QCOMPARE(movida.ruta(), ruta);
        QVERIFY(QFileInfo(ruta).isDir());
    }
    QVERIFY(!QFileInfo::exists(ruta));
}

void PruebaCarpetaDeTrabajo::seVaEntera()
{
    QString ruta;
    {
        const auto una = CarpetaDeTrabajo::nueva();
        ruta = una->ruta();
        QVERIFY(escribir(una->fichero(u"a/b/c"_s)));
        QVERIFY(QFile::link(documentos, una->fichero(u"enlace"_s)));
        QVERIFY(QFile::link(documentos + u"/tesis.odt"_s, una->fichero(u"a/enlace"_s)));
        // Deeper than descriptors last.
        QString honda = ruta;
        for (int i = 0; i < 4; ++i) {
            honda += u"/d"_s.repeated(90);
            QVERIFY(escribir(honda + u"/f"_s));
        }
        QVERIFY(escribir(una->fichero(u"cerrada/f"_s)));
        QCOMPARE(chmod(QFile::encodeName(una->fichero(u"cerrada"_s)).constData(), 0), 0);
    }
    QVERIFY(!QFileInfo::exists(ruta));
    QVERIFY(enLaRaiz().isEmpty());
}

/// Somebody puts a link where the program works: nothing is made, nothing is removed behind it.
void PruebaCarpetaDeTrabajo::unEnlaceEnSuSitio()
{
    QVERIFY(QDir().mkpath(casa->filePath(u"cache"_s)));
    QVERIFY(QFile::link(documentos, CarpetaPrivada::enLaCache()));
    const auto una = CarpetaDeTrabajo::nueva();
    QVERIFY(!una);
    QVERIFY(una.motivo().contains(u"privada"_s));
    CarpetaDeTrabajo::quitarMuertas();
    QVERIFY(QFile::remove(CarpetaPrivada::enLaCache()));
    QVERIFY(QDir().mkpath(CarpetaPrivada::enLaCache()));
    QVERIFY(QFile::link(documentos, CarpetaPrivada::enLaCache(u"trabajo"_s)));
    QVERIFY(!CarpetaDeTrabajo::nueva());
    CarpetaDeTrabajo::quitarMuertas();
    QVERIFY(!CarpetaPrivada::quitar(CarpetaPrivada::enLaCache(u"trabajo"_s)));
    QCOMPARE(QDir(documentos).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"tesis.odt"_s});
}

void PruebaCarpetaDeTrabajo::deOtraPersona()
{
    if (geteuid() != 0)
        QSKIP("Only the system's own user can make a folder somebody else's.");
    const auto suya = QFile::encodeName(CarpetaPrivada::enLaCache());
    QVERIFY(QDir().mkpath(CarpetaPrivada::enLaCache(u"trabajo/de otro"_s)));
    QCOMPARE(chown(suya.constData(), 12345, 12345), 0);
    QVERIFY(!CarpetaDeTrabajo::nueva());
    CarpetaDeTrabajo::quitarMuertas();
    QVERIFY(!CarpetaPrivada::quitar(CarpetaPrivada::enLaCache()));
    QVERIFY(QFileInfo::exists(CarpetaPrivada::enLaCache(u"trabajo/de otro"_s)));
    QCOMPARE(chown(suya.constData(), geteuid(), getegid()), 0);
}

void PruebaCarpetaDeTrabajo::losMuertosYLosVivos()
{
    std::array<int, 2> tubo{};
    QCOMPARE(pipe(tubo.data()), 0);
    std::array<pid_t, 2> otros{};
    for (auto &otro : otros) {
        otro = fork();
        if (otro == 0) {
            const auto suya = CarpetaDeTrabajo::nueva();
            const char bien = suya && escribir(suya->fichero(u"f"_s)) ? 'b' : 'm';
            while (write(tubo[1], &bien, 1) == 1)
                pause();
        }
        char dicho = 0;
        QCOMPARE(read(tubo[0], &dicho, 1), 1);
        QCOMPARE(dicho, 'b');
    }
    const auto mia = CarpetaDeTrabajo::nueva();
    QCOMPARE(enLaRaiz().size(), 3);
    // Entered by a second program, whose first one dies.
    const auto suya = enLaRaiz().first() == QFileInfo(mia->ruta()).fileName() ? enLaRaiz().last() : enLaRaiz().first();
    auto dentro = CarpetaDeTrabajo::entrar(CarpetaPrivada::enLaCache(u"trabajo/"_s + suya));
    QVERIFY(bool(dentro));
    for (const auto otro : otros) {
        CarpetaDeTrabajo::quitarMuertas();
        QVERIFY(QFileInfo::exists(mia->ruta()));
        kill(otro, SIGKILL);
        waitpid(otro, nullptr, 0);
    }
    CarpetaDeTrabajo::quitarMuertas();
    QCOMPARE(enLaRaiz().size(), 2);
    QVERIFY(QFile::exists(CarpetaPrivada::enLaCache(u"trabajo/"_s + suya + u"/f"_s)));
    dentro = Descriptor();
    CarpetaDeTrabajo::quitarMuertas();
    QCOMPARE(enLaRaiz(), QStringList{QFileInfo(mia->ruta()).fileName()});
    close(tubo[0]);
    close(tubo[1]);
}

void PruebaCarpetaDeTrabajo::nombresDeAntes()
{
    const auto temporal = QDir::tempPath();
    QVERIFY(escribir(temporal + u"/vellora-bd/UUID-sms.db"_s));
    QCOMPARE(chmod(QFile::encodeName(temporal + u"/vellora-bd"_s).constData(), S_IRWXU), 0);
    QVERIFY(QFile::link(documentos, temporal + u"/vellora-extraccion"_s));
    CarpetaDeTrabajo::quitarMuertas();
    QVERIFY(!QFileInfo::exists(temporal + u"/vellora-bd"_s));
    QVERIFY(QFileInfo(temporal + u"/vellora-extraccion"_s).isSymLink());
}

/// Folders that were made under an open umask, with a link and another person's folder among them.
void PruebaCarpetaDeTrabajo::seCierraALosDemas()
{
    const auto vellora = casa->filePath(u"Vellora"_s);
    const auto abierto = S_IRWXU | S_IRWXG | S_IROTH | S_IXOTH;
    const auto fotos = vellora + u"/iPhone/Fotos"_s;
    QVERIFY(escribir(fotos + u"/100APPLE/IMG_0001.JPG"_s));
    QVERIFY(QDir().mkpath(vellora + u"/de otro"_s));
    QVERIFY(QFile::link(documentos, vellora + u"/enlace"_s));
    for (const auto &ruta : {vellora, vellora + u"/iPhone"_s, fotos, vellora + u"/de otro"_s, documentos})
        QCOMPARE(chmod(QFile::encodeName(ruta).constData(), abierto), 0);
    if (geteuid() == 0)
        QCOMPARE(chown(QFile::encodeName(vellora + u"/de otro"_s).constData(), 12345, 12345), 0);
    CarpetaPrivada::cerrar(vellora, false);
    QCOMPARE(modo(vellora), mode_t(S_IRWXU));
    QCOMPARE(modo(fotos), mode_t(abierto));
    CarpetaPrivada::cerrar(vellora, true);
    QCOMPARE(modo(fotos), mode_t(S_IRWXU));
    QCOMPARE(modo(documentos), mode_t(abierto));
    if (geteuid() == 0)
        QCOMPARE(modo(vellora + u"/de otro"_s), mode_t(abierto));
    CarpetaPrivada::cerrar(casa->filePath(u"no está"_s), true);
}

QTEST_GUILESS_MAIN(PruebaCarpetaDeTrabajo)
#include "PruebaCarpetaDeTrabajo.moc"
