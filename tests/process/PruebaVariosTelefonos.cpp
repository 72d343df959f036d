#include "core/Herramientas.h"
#include "session/Detector.h"
#include "session/Modelo.h"
#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto ana = u"00008120-00000000000000A1"_s;
const auto luis = u"00008120-00000000000000B2"_s;
const auto rosa = u"00008120-00000000000000C3"_s;

QJsonObject uno(const QString &udid, const QString &nombre, const QString &producto)
{
    return {{u"udid"_s, udid}, {u"nombre"_s, nombre}, {u"producto"_s, producto}, {u"version"_s, u"17.5.1"_s}};
}

} // namespace

class PruebaVariosTelefonos : public QObject
{
    Q_OBJECT

private slots:
    void entranYSalen();
    void seSabeSinPreguntar();
    void unoCallado();
    void elAvisoEsDeQuienSeLeyo();
};

void PruebaVariosTelefonos::entranYSalen()
{
    const QJsonObject ruido{{u"udid"_s, u"CORTO12345"_s}, {u"ruido"_s, true}};
    TelefonoSimulado telefonos({{u"telefonos"_s, QJsonArray{uno(ana, u"Ana"_s, u"iPhone14,5"_s), ruido,
                                                            uno(luis, u"Casa/Luis"_s, u"iPhone9,1"_s)}}});
    QVERIFY2(telefonos.listo(), qPrintable(telefonos.motivo()));
    QCOMPARE(Detector::conectados(), (QStringList{ana, luis}));

    Modelo modelo;
    // Each is seen by itself too; what counts is what stands once no reading is out any more.
    const auto refrescar = [&] {
        QSignalSpy hecho(&modelo, &Modelo::refrescado);
        modelo.refrescar();
        QVERIFY(hecho.wait(30000));
        while (hecho.wait(2000)) {
        }
    };
    const auto elegido = [&] {
        return modelo.seleccionado() ? modelo.seleccionado()->nombre : QString();
    };
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 30000);
    QCOMPARE(elegido(), u"Ana"_s);
    QCOMPARE(modelo.seleccionado()->modelo(), u"iPhone 13"_s);
    QCOMPARE(modelo.iPhoneNuevo()->id, ana);
    modelo.seleccionar(luis);
    QCOMPARE(modelo.seleccionado()->modelo(), u"iPhone9,1"_s);
    QCOMPARE(modelo.carpetaBase(), QDir::homePath() + u"/Vellora/Casa-Luis"_s);

    QVERIFY(
        telefonos.orden(QJsonObject{{u"orden"_s, u"anadir"_s}, {u"telefono"_s, uno(rosa, u"Rosa"_s, u"iPhone17,3"_s)}})
            .value(u"bien"_s)
            .toBool());
    refrescar();
    QCOMPARE(modelo.dispositivos().size(), 3);
    QCOMPARE(elegido(), u"Casa/Luis"_s);

    // A phone whose battery does not answer this time keeps what it said before.
    const QJsonObject sinBateria{{u"orden"_s, u"valor"_s},
                                 {u"telefono"_s, luis},
                                 {u"dominio"_s, u"com.apple.mobile.battery"_s},
                                 {u"clave"_s, u"BatteryCurrentCapacity"_s},
                                 {u"valor"_s, QJsonValue::Null}};
    QVERIFY(telefonos.orden(sinBateria).value(u"bien"_s).toBool());
    QVERIFY(!Detector::leer(luis)->bateria); // it truly does not answer
    refrescar();
    QCOMPARE(modelo.seleccionado()->bateria, 82);

    QVERIFY(
        telefonos.orden(QJsonObject{{u"orden"_s, u"desconectar"_s}, {u"telefono"_s, luis}}).value(u"bien"_s).toBool());
    refrescar();
    QCOMPARE(modelo.dispositivos().size(), 2);
    QCOMPARE(elegido(), u"Ana"_s);
    QVERIFY(telefonos.orden(QJsonObject{{u"orden"_s, u"bloquear"_s}, {u"telefono"_s, ana}}).value(u"bien"_s).toBool());
    refrescar();
    QCOMPARE(elegido(), u"Rosa"_s); // a locked phone does not tell its name
    QVERIFY(
        telefonos.orden(QJsonObject{{u"orden"_s, u"desconectar"_s}, {u"telefono"_s, rosa}}).value(u"bien"_s).toBool());
    refrescar();
    QVERIFY(!modelo.seleccionado());
}

void PruebaVariosTelefonos::seSabeSinPreguntar()
{
    TelefonoSimulado telefonos({{u"telefonos"_s, QJsonArray{uno(ana, u"Ana"_s, u"iPhone14,5"_s)}}});
    QVERIFY2(telefonos.listo(), qPrintable(telefonos.motivo()));
    Modelo modelo;
    modelo.ponEnVista(true);
    QSignalSpy lecturas(&modelo, &Modelo::refrescado);
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 1, 30000);
    const auto mandar = [&](const QString &orden, const QString &cual) {
        return telefonos.orden(QJsonObject{{u"orden"_s, orden}, {u"telefono"_s, cual}}).value(u"bien"_s).toBool();
    };
    // At rest, past a turn of the clock, nobody speaks to the phone.
    const auto conexiones = [&] {
        return telefonos.orden(QJsonObject{{u"orden"_s, u"contar"_s}, {u"telefono"_s, ana}})
            .value(u"cuentas"_s)[u"conexiones"_s]
            .toObject();
    };
    QTest::qWait(1000);
    const auto antes = conexiones();
    const auto leidas = lecturas.size();
    QVERIFY(!antes.isEmpty());
    QTest::qWait(17000);
    QCOMPARE(conexiones(), antes);
    QCOMPARE(lecturas.size(), leidas);
    // One comes, goes and comes back: each is seen with nobody asking.
    QVERIFY(
        telefonos.orden(QJsonObject{{u"orden"_s, u"anadir"_s}, {u"telefono"_s, uno(luis, u"Luis"_s, u"iPhone9,1"_s)}})
            .value(u"bien"_s)
            .toBool());
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 10000);
    QVERIFY(mandar(u"desconectar"_s, luis));
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 1, 10000);
    QVERIFY(mandar(u"conectar"_s, luis));
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 10000);
    // What a job has changed is looked at when it ends; nothing beside it.
    modelo.tarea().empezar(u"Trabajo"_s, {});
    QVERIFY(mandar(u"desconectar"_s, luis));
    QTest::qWait(1000);
    QCOMPARE(modelo.dispositivos().size(), 2);
    modelo.tarea().cerrar(true);
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 1, 10000);
}

void PruebaVariosTelefonos::unoCallado()
{
    TelefonoSimulado telefonos(
        {{u"telefonos"_s, QJsonArray{uno(luis, u"Luis"_s, u"iPhone9,1"_s), uno(ana, u"Ana"_s, u"iPhone14,5"_s)}}});
    QVERIFY2(telefonos.listo(), qPrintable(telefonos.motivo()));
    Modelo modelo;
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 30000);
    QVERIFY(modelo.avisoCallados().isEmpty());
    const auto callar = [&](int milisegundos) {
        return telefonos
            .orden(QJsonObject{{u"orden"_s, u"pausa"_s},
                               {u"telefono"_s, luis},
                               {u"servicio"_s, u"lockdown"_s},
                               {u"ms"_s, milisegundos},
                               {u"veces"_s, 0}})[u"bien"_s]
            .toBool();
    };
    QVERIFY(callar(100000));
    QSignalSpy hecho(&modelo, &Modelo::refrescado);
    modelo.refrescar();
    QVERIFY(hecho.wait(30000));
    QCOMPARE(modelo.dispositivos().size(), 1);
    QCOMPARE(modelo.seleccionado()->id, ana);
    QVERIFY2(modelo.avisoCallados().startsWith(u"El iPhone «Luis» está conectado, pero no contesta."_s),
             qPrintable(modelo.avisoCallados()));
    QVERIFY(callar(0));
    modelo.refrescar();
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 30000);
    QVERIFY(modelo.avisoCallados().isEmpty());
}

void PruebaVariosTelefonos::elAvisoEsDeQuienSeLeyo()
{
    if (!Herramientas::pymobiledevice())
        QSKIP("pymobiledevice3 is not installed");
    TelefonoSimulado telefonos(
        {{u"telefonos"_s, QJsonArray{uno(ana, u"Ana"_s, u"iPhone14,5"_s), uno(luis, u"Luis"_s, u"iPhone9,1"_s)}}});
    QVERIFY2(telefonos.listo(), qPrintable(telefonos.motivo()));
    Modelo modelo;
    QTRY_COMPARE_WITH_TIMEOUT(modelo.dispositivos().size(), 2, 30000);
    QVERIFY(telefonos
                .orden(QJsonObject{{u"orden"_s, u"fallar"_s},
                                   {u"telefono"_s, ana},
                                   {u"peticion"_s, u"StartService:com.apple.afc"_s},
                                   {u"error"_s, u"PasswordProtected"_s}})
                .value(u"bien"_s)
                .toBool());
    modelo.comprobarAcceso();
    QTRY_VERIFY_WITH_TIMEOUT(modelo.avisoAcceso().has_value(), 30000);
    QVERIFY(
        telefonos.orden(QJsonObject{{u"orden"_s, u"desconectar"_s}, {u"telefono"_s, ana}}).value(u"bien"_s).toBool());
    QTRY_VERIFY_WITH_TIMEOUT(modelo.seleccionado() && modelo.seleccionado()->id == luis, 20000);
    QVERIFY(!modelo.avisoAcceso()); // nobody has asked Luis's yet
}

QTEST_GUILESS_MAIN(PruebaVariosTelefonos)
#include "PruebaVariosTelefonos.moc"
