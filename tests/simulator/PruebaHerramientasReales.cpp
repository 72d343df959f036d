#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const auto copia = u"/usr/bin/idevicebackup2"_s;
const auto info = u"/usr/bin/ideviceinfo"_s;

QString recursos()
{
    return QFileInfo(QStringLiteral(VELLORA)).absolutePath() + u"/../Resources"_s;
}

} // namespace

/// What the unmodified command-line tools make of the simulated phone.
class PruebaHerramientasReales : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        telefono = std::make_unique<TelefonoSimulado>();
        QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    }
    void cleanup() { telefono.reset(); }
    void preguntasSueltas();
    void emparejar();
    void soloLoQueCambia();
    void devolver();
    void pymobiledevice();

private:
    std::unique_ptr<TelefonoSimulado> telefono;
};

void PruebaHerramientasReales::preguntasSueltas()
{
    QCOMPARE(ejecutar(u"/usr/bin/idevice_id"_s, {u"-l"_s}).salida.trimmed(), telefono->udid().toUtf8());
    QCOMPARE(ejecutar(info, {u"-u"_s, telefono->udid(), u"-k"_s, u"DeviceName"_s}).salida,
             QByteArray("iPhone de Marta\n"));
    const auto disco = ejecutar(info, {u"-u"_s, telefono->udid(), u"-q"_s, u"com.apple.disk_usage"_s}).salida;
    QVERIFY(disco.contains("AmountDataAvailable: 38200000000\n"));
    QVERIFY(telefono->orden(u"bloquear"_s));
    const auto cerrado = ejecutar(info, {u"-u"_s, telefono->udid(), u"-k"_s, u"DeviceName"_s});
    QCOMPARE(cerrado.codigo, 255);
    QVERIFY(cerrado.palabras.contains("Password protected (-17)"));
}

void PruebaHerramientasReales::emparejar()
{
    const auto pareja = [&](const QString &orden) {
        return ejecutar(u"/usr/bin/idevicepair"_s, {u"-u"_s, telefono->udid(), orden});
    };
    QCOMPARE(pareja(u"validate"_s).codigo, 0);
    QVERIFY(telefono->orden(u"olvidar"_s));
    QVERIFY(pareja(u"pair"_s).salida.contains("Please accept the trust dialog"));
    QVERIFY(telefono->orden(u"denegar"_s));
    QVERIFY(pareja(u"pair"_s).salida.contains("denied the trust dialog"));
    QVERIFY(telefono->orden(u"confiar"_s));
    const auto hecha = pareja(u"pair"_s);
    QVERIFY2(hecha.codigo == 0 && hecha.salida.contains("SUCCESS: Paired"), hecha.salida.constData());
    QCOMPARE(ejecutar(info, {u"-u"_s, telefono->udid(), u"-k"_s, u"ProductType"_s}).salida, QByteArray("iPhone15,2\n"));
}

void PruebaHerramientasReales::soloLoQueCambia()
{
    const QTemporaryDir destino;
    const QStringList orden{u"-u"_s, telefono->udid(), u"backup"_s, destino.path()};
    QCOMPARE(ejecutar(copia, orden).codigo, 0);
    const auto antes = arbol(destino.path());
    QFile nuevo(telefono->contenido(telefono->udid()) + u"/dominios/HomeDomain/Library/nuevo.txt"_s);
    QVERIFY(nuevo.open(QIODevice::WriteOnly));
    nuevo.write("recién escrito");
    nuevo.close();
    const auto segunda = ejecutar(copia, orden);
    QCOMPARE(segunda.codigo, 0);
    QVERIFY(segunda.salida.contains("Incremental backup mode."));
    const auto despues = arbol(destino.path());
    QCOMPARE(despues.size(), antes.size() + 1);
    const auto recibidos = segunda.salida.mid(segunda.salida.indexOf("Received ")).split(' ').value(1).toInt();
    QVERIFY2(recibidos > 0 && recibidos < 12, segunda.salida.constData());
}

void PruebaHerramientasReales::devolver()
{
    const QTemporaryDir destino;
    QCOMPARE(ejecutar(copia, {u"-u"_s, telefono->udid(), u"backup"_s, u"--full"_s, destino.path()}).codigo, 0);
    const auto hecho =
        ejecutar(copia, {u"-u"_s, telefono->udid(), u"restore"_s, u"--settings"_s, u"--reboot"_s, destino.path()});
    QVERIFY2(hecho.codigo == 0 && hecho.salida.contains("Restore Successful."), hecho.salida.constData());
    const auto casa = telefono->contenido(telefono->udid());
    const auto devueltos = arbol(casa + u"/restaurado/HomeDomain"_s);
    QVERIFY(devueltos.size() > 5);
    auto enElTelefono = arbol(casa + u"/dominios/HomeDomain"_s);
    // Without encryption, the phone keeps these to itself.
    QVERIFY(enElTelefono.removeIf([](const auto &uno) {
        return uno.key().startsWith(u"Library/CallHistoryDB/"_s) ||
               uno.key().startsWith(u"Library/Safari/History.db"_s);
    }) > 0);
    QCOMPARE(devueltos, enElTelefono);
}

void PruebaHerramientasReales::pymobiledevice()
{
    const auto herramienta = recursos() + u"/motor/bin/pymobiledevice3"_s;
    if (!QFileInfo(herramienta).isExecutable())
        QSKIP("pymobiledevice3 is not installed here");
    const QStringList cual{u"--udid"_s, telefono->udid()};
    const auto lista = ejecutar(herramienta, QStringList{u"afc"_s, u"ls"_s, u"/DCIM"_s} + cual);
    QCOMPARE(lista.codigo, 0);
    QVERIFY(lista.salida.startsWith("/DCIM\n"));
    const auto apps = ejecutar(herramienta, QStringList{u"apps"_s, u"list"_s, u"--type"_s, u"User"_s} + cual);
    QVERIFY(QJsonDocument::fromJson(apps.salida).object().contains(u"net.whatsapp.WhatsApp"_s));
    QVERIFY(telefono->orden(u"bloquear"_s));
    const auto cerrado = ejecutar(herramienta, QStringList{u"afc"_s, u"ls"_s, u"/DCIM"_s} + cual);
    QVERIFY(cerrado.codigo != 0 && cerrado.salida.isEmpty()); // true exit codes are why this version is pinned
}

QTEST_GUILESS_MAIN(PruebaHerramientasReales)
#include "PruebaHerramientasReales.moc"
