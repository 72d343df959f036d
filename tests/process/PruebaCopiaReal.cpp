#include "core/FicheroDelDiario.h"
#include "support/TelefonoSimulado.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto programa = QStringLiteral(VELLORA);
const auto herramienta = u"/usr/bin/idevicebackup2"_s;

struct Copia {
    int codigo = -1;
    QString detalle;
    QStringList registro;
    QString carpeta;
};

Copia copiar(const QStringList &delante = {})
{
    auto orden = delante + QStringList{programa, u"copia"_s, u"--sin-cifrar"_s, u"--json"_s};
    const auto hecho = ejecutar(orden.takeFirst(), orden);
    const auto objeto = QJsonDocument::fromJson(hecho.salida).object();
    Copia copia{hecho.codigo, objeto.value(u"detalle"_s).toString(), {}, objeto.value(u"carpeta"_s).toString()};
    const auto registro = objeto.value(u"registro"_s).toArray();
    for (const auto &linea : registro)
        copia.registro << linea.toString();
    return copia;
}

QList<Actividad> diario()
{
    return leerDiario(Diario::ficheroPorDefecto());
}

/// The files of a backup by name and content; those that hold the moment of the run, and the keychain, which the phone
/// seals anew each time, by name only.
QMap<QString, QByteArray> contenidoDe(const QString &copia)
{
    auto ficheros = arbol(copia);
    ficheros.remove(u".vellora-comprobada"_s); // our own note
    const auto llavero =
        QCryptographicHash::hash("KeychainDomain-keychain-backup.plist", QCryptographicHash::Sha1).toHex();
    ficheros.insert(QString::fromLatin1(llavero.left(2) + '/' + llavero), {});
    for (const auto &nombre : {u"Info.plist"_s, u"Status.plist"_s, u"Manifest.plist"_s, u"Manifest.db"_s}) {
        if (ficheros.contains(nombre))
            ficheros[nombre].clear();
    }
    return ficheros;
}

bool hayEspaciosDeMontaje()
{
    return ejecutar(u"unshare"_s,
                    {u"--mount"_s, u"--map-root-user"_s, u"mount"_s, u"-t"_s, u"tmpfs"_s, u"x"_s, u"/mnt"_s})
               .codigo == 0;
}

} // namespace

/// The program and the true backup tool against the simulated phone, run as an owner would run them.
class PruebaCopiaReal : public QObject
{
    Q_OBJECT

private slots:
    void init() { QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively(); }
    void igualQueLaHerramientaSola();
    void fallosDelTelefono_data();
    void fallosDelTelefono();
    void discoLleno_data();
    void discoLleno();
    void discoLlenoUnMomento();
    void otraCopiaEnMarcha();
    void sinTelefono();
    void malEscrito();
};

void PruebaCopiaReal::igualQueLaHerramientaSola()
{
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    const QTemporaryDir sola;
    const auto bien = ejecutar(herramienta, {u"-u"_s, telefono.udid(), u"backup"_s, u"--full"_s, sola.path()});
    QCOMPARE(bien.codigo, 0);

    const auto primera = copiar();
    QCOMPARE(primera.codigo, 0);
    QCOMPARE(primera.detalle, u"Copia completa guardada"_s);
    QCOMPARE(primera.carpeta, QDir::homePath() + u"/Vellora/iPhone de Marta/Copias de seguridad/"_s + telefono.udid());
    const auto esperado = contenidoDe(sola.filePath(telefono.udid()));
    QVERIFY(esperado.size() > 30);
    QCOMPARE(contenidoDe(primera.carpeta), esperado);
    QVERIFY(primera.registro.contains(u"Backup Successful."_s)); // the very last words of the tool
    QVERIFY(primera.registro.filter(u"Finished"_s).isEmpty());

    const auto segunda = copiar();
    QCOMPARE(segunda.codigo, 0);
    QCOMPARE(contenidoDe(segunda.carpeta), esperado);
    QCOMPARE(diario().size(), 2);
    QCOMPARE(diario().first().estado, Actividad::Estado::Bien);
    QCOMPARE(diario().first().carpeta, QFileInfo(segunda.carpeta).path());
    QVERIFY(procesosCon(telefono.udid()).isEmpty());
}

void PruebaCopiaReal::fallosDelTelefono_data()
{
    QTest::addColumn<QJsonObject>("orden");
    QTest::addColumn<QString>("sentencia");
    const auto fallar = [](const QString &peticion, const QJsonValue &error, const QString &texto = {}) {
        QJsonObject orden{{u"orden"_s, u"fallar"_s}, {u"peticion"_s, peticion}, {u"error"_s, error}};
        if (!texto.isEmpty())
            orden[u"texto"_s] = texto;
        return orden;
    };
    const auto bloqueado = u"El iPhone estaba bloqueado. Desbloquéalo con tu código y dale otra vez."_s;
    QTest::newRow("locked when it starts") << fallar(u"Backup"_s, 208, u"Device locked"_s) << bloqueado;
    QTest::newRow("computer without room")
        << fallar(u"Backup"_s, 105, u"Insufficient free disk space"_s) << u"No cabe en el disco del Mac."_s;
    QTest::newRow("service refused") << fallar(u"StartService:com.apple.mobilebackup2"_s, u"UserDeniedPairing"_s)
                                     << QString();
    QTest::newRow("another error") << fallar(u"Backup"_s, 205) << QString();
}

void PruebaCopiaReal::fallosDelTelefono()
{
    QFETCH(QJsonObject, orden);
    QFETCH(QString, sentencia);
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    QVERIFY(telefono.orden(orden).value(u"bien"_s).toBool());
    const auto copia = copiar();
    QCOMPARE(copia.codigo, 1);
    QCOMPARE(copia.detalle, u"No se pudo completar"_s);
    const auto generica = u"La copia no se pudo completar. En «Ver detalles» está lo que dijo el sistema."_s;
    QCOMPARE(copia.registro.last(), sentencia.isEmpty() ? generica : sentencia);
    QCOMPARE(diario().first().estado, Actividad::Estado::Mal);
    QCOMPARE(diario().first().detalle, u"No se pudo completar"_s);
    QVERIFY(!QFile::exists(copia.carpeta + u"/Manifest.db"_s));
    QVERIFY(procesosCon(telefono.udid()).isEmpty());
}

void PruebaCopiaReal::discoLleno_data()
{
    QTest::addColumn<bool>("elTelefonoMiraElSitio");
    QTest::newRow("the phone sees that it does not fit") << true;
    QTest::newRow("the disk fills up on the way and the tool says that all went well") << false;
}

void PruebaCopiaReal::discoLleno()
{
    if (!hayEspaciosDeMontaje())
        QSKIP("a small disk of its own needs user namespaces or root");
    QFETCH(bool, elTelefonoMiraElSitio);
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    QVERIFY(
        telefono
            .orden(QJsonObject{{u"orden"_s, u"ignorar_espacio_del_ordenador"_s}, {u"valor"_s, !elTelefonoMiraElSitio}})
            .value(u"bien"_s)
            .toBool());
    const auto vellora = QDir::homePath() + u"/Vellora"_s;
    QVERIFY(QDir().mkpath(vellora + u"/iPhone de Marta"_s));
    // The journal stays on the large disk; what the tool left is looked at from inside the small one.
    const auto guion =
        u"mount -t tmpfs -o size=1500k x \"$1/iPhone de Marta\" && \"$2\" copia --sin-cifrar --json; c=$?; "
        "find \"$1/iPhone de Marta\" -name Manifest.db >&2; exit $c"_s;
    const auto hecho = ejecutar(
        u"unshare"_s, {u"--mount"_s, u"--map-root-user"_s, u"sh"_s, u"-c"_s, guion, u"sh"_s, vellora, programa});
    QCOMPARE(hecho.codigo, 1);
    const auto objeto = QJsonDocument::fromJson(hecho.salida).object();
    QCOMPARE(objeto.value(u"detalle"_s).toString(), u"No se pudo completar"_s);
    QCOMPARE(objeto.value(u"registro"_s).toArray().last().toString(), u"No cabe en el disco del Mac."_s);
    QVERIFY2(!hecho.palabras.contains("/Manifest.db"), hecho.palabras.constData());
    QCOMPARE(diario().first().estado, Actividad::Estado::Mal);
}

void PruebaCopiaReal::discoLlenoUnMomento()
{
    if (!hayEspaciosDeMontaje())
        QSKIP("a small disk of its own needs user namespaces or root");
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    QVERIFY(telefono.orden({{u"orden"_s, u"ignorar_espacio_del_ordenador"_s}, {u"valor"_s, true}})[u"bien"_s].toBool());
    QVERIFY(telefono.orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 600'000}})[u"bien"_s].toBool());
    const auto vellora = QDir::homePath() + u"/Vellora"_s;
    QVERIFY(QDir().mkpath(vellora + u"/iPhone de Marta"_s));
    // Another program fills the disk once the backup's files come, and gives the room back a second and a half later.
    const auto guion =
        u"d=\"$1/iPhone de Marta\"; mount -t tmpfs -o size=20m x \"$d\"; "
        "\"$2\" copia --sin-cifrar --json & p=$!; "
        "until find \"$d\" -path '*/Snapshot/*' -type f | grep -q . || ! kill -0 $p; do sleep .02; done; "
        "cat /dev/zero >\"$d/ajeno\" 2>/dev/null; sleep 1.5; rm \"$d/ajeno\"; wait $p; c=$?; "
        "find \"$d\" -name Manifest.db >&2; exit $c"_s;
    const auto hecho = ejecutar(
        u"unshare"_s, {u"--mount"_s, u"--map-root-user"_s, u"bash"_s, u"-c"_s, guion, u"sh"_s, vellora, programa});
    QCOMPARE(hecho.codigo, 1);
    const auto objeto = QJsonDocument::fromJson(hecho.salida).object();
    QCOMPARE(objeto.value(u"registro"_s).toArray().last().toString(), u"No cabe en el disco del Mac."_s);
    QVERIFY2(!hecho.palabras.contains("/Manifest.db"), hecho.palabras.constData());
}

void PruebaCopiaReal::otraCopiaEnMarcha()
{
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    QVERIFY(telefono.orden(QJsonObject{{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 200000}})
                .value(u"bien"_s)
                .toBool());
    const QTemporaryDir ajena;
    QProcess otra;
    otra.start(herramienta, {u"-u"_s, telefono.udid(), u"backup"_s, ajena.path()});
    QVERIFY(otra.waitForStarted());
    const auto copia = copiar();
    QCOMPARE(copia.codigo, 1);
    QCOMPARE(copia.detalle, u"Ya hay una copia en marcha"_s);
    QCOMPARE(copia.registro.size(), 3);
    QVERIFY(diario().isEmpty());
    QCOMPARE(otra.state(), QProcess::Running); // and that one goes on
    otra.kill();
    otra.waitForFinished();
}

void PruebaCopiaReal::sinTelefono()
{
    TelefonoSimulado telefono;
    QVERIFY2(telefono.listo(), qPrintable(telefono.motivo()));
    const auto ajeno = ejecutar(programa, {u"copia"_s, u"--udid"_s, u"00008120-0000000000000000"_s});
    QCOMPARE(ajeno.codigo, 1);
    QVERIFY(ajeno.palabras.contains("No veo ese iPhone"));
    QVERIFY(telefono.orden(u"desconectar"_s));
    const auto nadie = ejecutar(programa, {u"copia"_s});
    QCOMPARE(nadie.codigo, 1);
    QVERIFY(nadie.palabras.contains("No veo ningún iPhone"));
    const auto lista = ejecutar(programa, {u"dispositivos"_s, u"--json"_s});
    QCOMPARE(lista.codigo, 0);
    QVERIFY(QJsonDocument::fromJson(lista.salida).isArray());
    QVERIFY(telefono.orden(u"conectar"_s));
    const auto uno = QJsonDocument::fromJson(ejecutar(programa, {u"dispositivos"_s, u"--json"_s}).salida).array();
    QCOMPARE(uno.size(), 1);
    QCOMPARE(uno.first().toObject().value(u"nombre"_s).toString(), u"iPhone de Marta"_s);
    QCOMPARE(uno.first().toObject().value(u"bateria"_s).toInt(), 82);
    // Locked or not trusted, a phone does not tell its name and is not there.
    QVERIFY(telefono.orden(u"bloquear"_s));
    QCOMPARE(ejecutar(programa, {u"dispositivos"_s}).salida, QByteArray());
}

void PruebaCopiaReal::malEscrito()
{
    for (const auto &orden :
         {QStringList{u"copias"_s}, {u"copia"_s, u"--udid"_s}, {u"diario"_s, u"--udid"_s, u"x"_s}, {u"--json"_s}}) {
        const auto hecho = ejecutar(programa, orden);
        QCOMPARE(hecho.codigo, 2);
        QVERIFY(hecho.salida.isEmpty() && hecho.palabras.contains("Uso:"));
    }
    QCOMPARE(ejecutar(programa, {u"--version"_s}).codigo, 0);
}

QTEST_GUILESS_MAIN(PruebaCopiaReal)
#include "PruebaCopiaReal.moc"
