#include "backups/Catalogo.h"
#include "backups/CopiasAnteriores.h"
#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

// Another build of the program may be tried by the same test.
QString programa()
{
    return qEnvironmentVariable("VELLORA_PROGRAMA", QStringLiteral(VELLORA));
}

} // namespace

/// A new backup that comes to nothing, for whatever reason, costs nothing of the one before it.
class PruebaCopiaAnterior : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { telefono.reset(); }
    void laQueHabiaQueda_data();
    void laQueHabiaQueda();
    void laQueHabiaQuedaSiElDiscoSeLlena();
    void sinSitioSeDiceAntes();
    void laNuevaTomaSuSitio();

private:
    bool frenar(int bytesPorSegundo)
    {
        return telefono->orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, bytesPorSegundo}})[u"bien"_s]
            .toBool();
    }
    /// All but our own note, which a new look at the backup may write anew.
    static QMap<QString, QByteArray> ficheros(const QString &carpeta)
    {
        auto todos = arbol(carpeta);
        todos.remove(u".vellora-comprobada"_s);
        return todos;
    }
    /// Runs `guion` with the phone's folder on a small disk of its own; "$1" is that folder, "$2" the program.
    Ejecucion enDiscoPequeno(const QString &guion) const
    {
        const auto entero = u"mount -t tmpfs -o size=12m x \"$1\" && "_s + guion;
        return ejecutar(u"unshare"_s,
                        {u"--mount"_s, u"--map-root-user"_s, u"sh"_s, u"-c"_s, entero, u"sh"_s, base, programa()});
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    QString base;
    QString copias;
    QString carpeta;
};

void PruebaCopiaAnterior::init()
{
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    base = QDir::homePath() + u"/Vellora/iPhone de Marta"_s;
    QVERIFY(QDir().mkpath(base));
    copias = base + u"/Copias de seguridad"_s;
    carpeta = copias + u'/' + telefono->udid();
}

void PruebaCopiaAnterior::laQueHabiaQueda_data()
{
    QTest::addColumn<QJsonObject>("orden");
    QTest::addColumn<bool>("matar");
    const auto servicio = u"com.apple.mobilebackup2"_s;
    QTest::newRow("the phone gives up half-way") << QJsonObject{{u"orden"_s, u"fallar"_s},
                                                                {u"peticion"_s, u"Backup"_s},
                                                                {u"error"_s, 205},
                                                                {u"tras_ficheros"_s, 20}}
                                                 << false;
    QTest::newRow("the phone refuses at the start")
        << QJsonObject{{u"orden"_s, u"fallar"_s}, {u"peticion"_s, u"Backup"_s}, {u"error"_s, 208}} << false;
    QTest::newRow("the cable leaves in the middle of a file")
        << QJsonObject{{u"orden"_s, u"cortar"_s}, {u"servicio"_s, servicio}, {u"bytes"_s, 900000}} << false;
    QTest::newRow("the program is killed")
        << QJsonObject{{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 300000}} << true;
}

void PruebaCopiaAnterior::laQueHabiaQueda()
{
    QFETCH(QJsonObject, orden);
    QFETCH(bool, matar);
    QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    const auto antes = ficheros(carpeta);
    QVERIFY(antes.size() > 30);
    const auto fecha = QFileInfo(carpeta + u"/Info.plist"_s).lastModified();
    QVERIFY(telefono->orden(orden)[u"bien"_s].toBool());
    if (matar) {
        QProcess proceso;
        proceso.start(programa(), {u"copia"_s, u"--sin-cifrar"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!procesosCon(u"--full"_s).isEmpty(), 20000);
        QTest::qWait(2500);
        proceso.kill();
        QVERIFY(proceso.waitForFinished());
        QTRY_VERIFY_WITH_TIMEOUT(procesosCon(u"idevicebackup2"_s).isEmpty(), 10000);
    } else {
        QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 1);
    }
    QCOMPARE(ficheros(carpeta), antes);
    QCOMPARE(QFileInfo(carpeta + u"/Info.plist"_s).lastModified(), fecha);
    QCOMPARE(Catalogo::estadoDe(carpeta).clase, Catalogo::Clase::Entera);

    // The next one goes well, and nothing is left of the one that did not.
    QVERIFY(
        telefono->orden({{u"orden"_s, u"fallar"_s}, {u"peticion"_s, QString()}, {u"error"_s, QJsonValue()}})[u"bien"_s]
            .toBool());
    QVERIFY(frenar(0) && telefono->orden(u"conectar"_s));
    QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    QCOMPARE(QDir(copias).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{telefono->udid(), u"Copias anteriores"_s}));
    const auto anteriores = CopiasAnteriores::listar(copias, telefono->udid(), true);
    QCOMPARE(anteriores.size(), 1);
    QCOMPARE(ficheros(anteriores.first().carpeta()), antes);
    QVERIFY(anteriores.first().entera && anteriores.first().bytes > 0);
}

void PruebaCopiaAnterior::laQueHabiaQuedaSiElDiscoSeLlena()
{
    // Another program takes the room while the phone sends; neither the phone nor the tool sees it.
    QVERIFY(
        telefono->orden({{u"orden"_s, u"ignorar_espacio_del_ordenador"_s}, {u"valor"_s, true}})[u"bien"_s].toBool());
    QVERIFY(frenar(1'000'000));
    const auto hecho = enDiscoPequeno(
        u"suma() { (cd \"$1/Copias de seguridad/\"*-*/ && find . -type f ! -name .vellora-comprobada "
        "-exec sha1sum {} + | sort | sha1sum); }; "
        "\"$2\" copia --sin-cifrar || exit 9; a=$(suma \"$1\"); "
        "(sleep 2; head -c 20m /dev/zero > \"$1/ajeno\") & \"$2\" copia --sin-cifrar --json; c=$?; wait; "
        "[ \"$a\" = \"$(suma \"$1\")\" ] || { echo CAMBIADA >&2; ls -la \"$1/Copias de seguridad/\"*-*/ "
        ">&2; exit 8; }; "
        "ls -A \"$1/Copias de seguridad\" | sed 's/^/QUEDA /' >&2; exit $c"_s);
    QVERIFY2(hecho.codigo == 1, hecho.palabras.constData());
    QVERIFY(hecho.palabras.contains("QUEDA 0") && !hecho.palabras.contains("QUEDA ."));
}

void PruebaCopiaAnterior::sinSitioSeDiceAntes()
{
    const auto hecho =
        enDiscoPequeno(u"\"$2\" copia --sin-cifrar || exit 9; "
                       "head -c $(($(df --output=avail -B1 \"$1\" | tail -1) - 500000)) /dev/zero > \"$1/ajeno\"; "
                       "\"$2\" copia --sin-cifrar --json; exit $?"_s);
    QCOMPARE(hecho.codigo, 1);
    const auto objeto = QJsonDocument::fromJson(hecho.salida.split('\n').value(1).isEmpty()
                                                    ? hecho.salida
                                                    : hecho.salida.mid(hecho.salida.indexOf('{')))
                            .object();
    QCOMPARE(objeto.value(u"detalle"_s).toString(), u"Puede que no quepa en el disco"_s);
}

void PruebaCopiaAnterior::laNuevaTomaSuSitio()
{
    // A backup that an older version made inside the one that there was is a backup too.
    QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    QVERIFY(QDir().rename(carpeta, copias + u"/dentro"_s));
    QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    QVERIFY(QDir().rename(copias + u"/dentro"_s, carpeta + u'/' + telefono->udid()));
    const auto fuera = ficheros(carpeta + u'/' + telefono->udid());
    QCOMPARE(ejecutar(programa(), {u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    QVERIFY(!QFile::exists(carpeta + u'/' + telefono->udid()));
    auto anteriores = CopiasAnteriores::listar(copias, telefono->udid());
    QCOMPARE(anteriores.size(), 1); // the youngest one
    // Restoring, and every other tool, takes an earlier one by its folder.
    const auto otra = ejecutar(u"/usr/bin/idevicebackup2"_s, {u"-u"_s, telefono->udid(), u"restore"_s, u"--settings"_s,
                                                              anteriores.first().carpetaCopias});
    QVERIFY2(otra.codigo == 0, (otra.salida + otra.palabras).constData());
    QVERIFY(CopiasAnteriores::quitar(copias, anteriores.first()));
    QVERIFY(CopiasAnteriores::listar(copias, telefono->udid()).isEmpty());
    QVERIFY(QDir(copias + u"/Copias anteriores"_s).isEmpty());
}

QTEST_GUILESS_MAIN(PruebaCopiaAnterior)
#include "PruebaCopiaAnterior.moc"
