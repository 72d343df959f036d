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
};

void PruebaVariosTelefonos::entranYSalen()
{
    const QJsonObject ruido{{u"udid"_s, u"CORTO12345"_s}, {u"ruido"_s, true}};
    TelefonoSimulado telefonos({{u"telefonos"_s, QJsonArray{uno(ana, u"Ana"_s, u"iPhone14,5"_s), ruido,
                                                            uno(luis, u"Casa/Luis"_s, u"iPhone9,1"_s)}}});
    QVERIFY2(telefonos.listo(), qPrintable(telefonos.motivo()));
    QCOMPARE(Detector::conectados(), (QStringList{ana, luis}));

    Modelo modelo;
    const auto refrescar = [&] {
        QSignalSpy hecho(&modelo, &Modelo::refrescado);
        modelo.refrescar();
        QVERIFY(hecho.wait(30000));
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

QTEST_GUILESS_MAIN(PruebaVariosTelefonos)
#include "PruebaVariosTelefonos.moc"
