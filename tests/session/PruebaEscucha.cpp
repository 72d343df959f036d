#include "session/EscuchaDeUsbmuxd.h"
#include "session/RitmoDeLectura.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

QByteArray trama(const QByteArray &dentro, quint32 etiqueta = 0)
{
    const auto cuerpo =
        R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + dentro + "</dict></plist>";
    const quint32 campos[] = {qToLittleEndian(quint32(16 + cuerpo.size())), qToLittleEndian(1U), qToLittleEndian(8U),
                              qToLittleEndian(etiqueta)};
    return QByteArray(reinterpret_cast<const char *>(campos), 16) + cuerpo;
}

QByteArray resultado(int numero)
{
    return trama("<key>MessageType</key><string>Result</string><key>Number</key><integer>" +
                     QByteArray::number(numero) + "</integer>",
                 1);
}

QByteArray suceso(const QByteArray &tipo, int numero, const QByteArray &serie = {}, const QByteArray &conexion = "USB")
{
    const auto propiedades = serie.isEmpty()
                                 ? QByteArray()
                                 : "<key>Properties</key><dict><key>ConnectionType</key><string>" + conexion +
                                       "</string><key>SerialNumber</key><string>" + serie + "</string></dict>";
    return trama("<key>MessageType</key><string>" + tipo + "</string><key>DeviceID</key><integer>" +
                 QByteArray::number(numero) + "</integer>" + propiedades);
}

const auto udid = u"00008120-001A2B3C4D4C1E9A"_s;
const QByteArray serie = "00008120001A2B3C4D4C1E9A";

} // namespace

/// The listener against a usbmuxd of our own, which says what it likes; the simulated phone's is in process/.
class PruebaEscucha : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QDir(carpeta()).removeRecursively();
        QDir().mkpath(carpeta());
        qputenv("USBMUXD_SOCKET_ADDRESS", "UNIX:" + ruta().toUtf8());
    }
    void cleanup()
    {
        cliente = nullptr;
        servidor.reset();
    }
    void direcciones_data();
    void direcciones();
    void llegaSeVaYConfia();
    void aTrozos();
    void loQueNoSeEntiende_data();
    void loQueNoSeEntiende();
    void empiezaTardeYVuelve();
    void porRed();
    void ritmo();

private:
    static QString carpeta() { return QDir::homePath() + u"/mux"_s; }
    static QString ruta() { return carpeta() + u"/usbmuxd"_s; }
    void servir()
    {
        servidor = std::make_unique<QLocalServer>();
        QVERIFY(servidor->listen(ruta()));
    }
    /// The request to listen has come.
    void esperarCliente()
    {
        QTRY_VERIFY_WITH_TIMEOUT(servidor->hasPendingConnections(), 10000);
        cliente = servidor->nextPendingConnection();
        QTRY_VERIFY_WITH_TIMEOUT(cliente->peek(10000).contains("<string>Listen</string>"), 10000);
        const auto pedido = cliente->readAll();
        QCOMPARE(qFromLittleEndian<quint32>(pedido.constData()), quint32(pedido.size()));
        QCOMPARE(pedido.mid(4, 8), QByteArray("\1\0\0\0\10\0\0\0", 8));
    }

    std::unique_ptr<QLocalServer> servidor;
    QLocalSocket *cliente = nullptr;
};

void PruebaEscucha::direcciones_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("donde");
    QTest::addColumn<int>("puerto");
    QTest::newRow("none") << QByteArray() << u"/var/run/usbmuxd"_s << 0;
    QTest::newRow("a path") << QByteArray("UNIX:/a b/c:1") << u"/a b/c:1"_s << 0;
    QTest::newRow("host and port") << QByteArray("localhost:27015") << u"localhost"_s << 27015;
    QTest::newRow("six") << QByteArray("[::1]:27015") << u"::1"_s << 27015;
}

void PruebaEscucha::direcciones()
{
    QFETCH(QByteArray, variable);
    QFETCH(int, puerto);
    qputenv("USBMUXD_SOCKET_ADDRESS", variable);
    QTEST(direccionDeUsbmuxd().donde, "donde");
    QCOMPARE(int(direccionDeUsbmuxd().puerto), puerto);
}

void PruebaEscucha::llegaSeVaYConfia()
{
    servir();
    EscuchaDeUsbmuxd escucha;
    QSignalSpy llego(&escucha, &EscuchaDeUsbmuxd::llego);
    QSignalSpy cambio(&escucha, &EscuchaDeUsbmuxd::cambio);
    esperarCliente();
    QCOMPARE(escucha.estado(), EscuchaDeUsbmuxd::Estado::SinUsbmuxd);
    cliente->write(resultado(0) + suceso("Attached", 3, serie) + suceso("Attached", 4, serie, "Network"));
    QTRY_COMPARE(llego.size(), 1);
    QCOMPARE(llego.first().first().toString(), udid); // as the tools print it
    QCOMPARE(escucha.estado(), EscuchaDeUsbmuxd::Estado::Escuchando);
    cliente->write(suceso("Paired", 3));
    QTRY_COMPARE(cambio.size(), 1);
    QCOMPARE(escucha.presentes(), QSet<QString>{udid});
    // Those by network are not on the cable, whatever becomes of them.
    cliente->write(suceso("Detached", 4) + suceso("Paired", 4) + suceso("Detached", 3));
    QTRY_COMPARE(cambio.size(), 2);
    QVERIFY(escucha.presentes().isEmpty());
    QCOMPARE(llego.size(), 1);
}

void PruebaEscucha::aTrozos()
{
    servir();
    EscuchaDeUsbmuxd escucha;
    QSignalSpy llego(&escucha, &EscuchaDeUsbmuxd::llego);
    esperarCliente();
    const auto todo = resultado(0) + suceso("Attached", 3, serie) + suceso("Attached", 5, "CORTO123");
    for (qsizetype i = 0; i < todo.size(); i += 97) {
        cliente->write(todo.mid(i, 97));
        QTest::qWait(1);
    }
    QTRY_COMPARE(llego.size(), 2);
    QCOMPARE(escucha.presentes(), (QSet<QString>{udid, u"CORTO123"_s}));
}

void PruebaEscucha::loQueNoSeEntiende_data()
{
    QTest::addColumn<QByteArray>("dicho");
    const auto gigante = [](quint32 largo) {
        const quint32 campos[] = {qToLittleEndian(largo), 1, 8, 0};
        return QByteArray(reinterpret_cast<const char *>(campos), 16);
    };
    QTest::newRow("refused") << resultado(1);
    QTest::newRow("longer than any notice") << resultado(0) + suceso("Attached", 3, serie) + gigante(0xFFFFFFFF);
    QTest::newRow("shorter than itself") << resultado(0) + gigante(3);
    QTest::newRow("no property list") << resultado(0) + gigante(20) + "hola";
    QTest::newRow("a list without an end") << resultado(0) + trama(QByteArray("<array>").repeated(4000));
}

void PruebaEscucha::loQueNoSeEntiende()
{
    QFETCH(QByteArray, dicho);
    servir();
    EscuchaDeUsbmuxd escucha;
    esperarCliente();
    cliente->write(dicho);
    QTRY_COMPARE(escucha.estado(), EscuchaDeUsbmuxd::Estado::SinAvisos);
    QVERIFY(escucha.presentes().isEmpty());
    // Nothing is believed any more, and nothing piles up.
    cliente->write(suceso("Attached", 3, serie));
    QTest::qWait(50);
    QVERIFY(escucha.presentes().isEmpty());
}

void PruebaEscucha::empiezaTardeYVuelve()
{
    EscuchaDeUsbmuxd escucha;
    QSignalSpy cambio(&escucha, &EscuchaDeUsbmuxd::cambio);
    QTest::qWait(50);
    servir(); // its folder is watched
    esperarCliente();
    cliente->write(resultado(0) + suceso("Attached", 3, serie));
    QTRY_COMPARE(escucha.presentes().size(), 1);
    servidor.reset();
    QTRY_COMPARE(cambio.size(), 1); // nobody can be reached
    QVERIFY(escucha.presentes().isEmpty());
    QCOMPARE(escucha.estado(), EscuchaDeUsbmuxd::Estado::SinUsbmuxd);
    servir();
    esperarCliente();
    cliente->write(resultado(0) + suceso("Attached", 7, serie));
    QTRY_COMPARE(escucha.presentes(), QSet<QString>{udid});
}

void PruebaEscucha::porRed()
{
    QTcpServer remoto;
    QVERIFY(remoto.listen(QHostAddress::LocalHost));
    qputenv("USBMUXD_SOCKET_ADDRESS", "127.0.0.1:" + QByteArray::number(remoto.serverPort()));
    EscuchaDeUsbmuxd escucha;
    QTRY_VERIFY(remoto.hasPendingConnections());
    auto *suyo = remoto.nextPendingConnection();
    QTRY_VERIFY(suyo->peek(1000).contains("Listen"));
    suyo->write(resultado(0) + suceso("Attached", 3, serie));
    QTRY_COMPARE(escucha.presentes(), QSet<QString>{udid});
}

void PruebaEscucha::ritmo()
{
    RitmoDeLectura ritmo;
    QVERIFY(ritmo.toca(0, false, true)); // never read yet
    ritmo.leida(true, 100);
    QVERIFY(!ritmo.toca(399, true, true) && ritmo.toca(400, true, true));
    QVERIFY(!ritmo.toca(4000, false, true)); // nobody looks
    QVERIFY(ritmo.toca(115, false, false));  // nobody tells either
    ritmo.algoCambio();
    QVERIFY(ritmo.toca(101, false, true));
    // A phone that stays locked: each time at first, then seldom.
    for (int i = 1; i <= RitmoDeLectura::fallosSeguidos; ++i) {
        ritmo.leida(false, 100 + 15 * i);
        QVERIFY(ritmo.toca(100 + 15 * i + 15, false, true));
    }
    ritmo.leida(false, 300);
    QVERIFY(!ritmo.toca(345, true, true) && ritmo.toca(360, true, true));
    QVERIFY(!ritmo.toca(585, false, true) && ritmo.toca(600, false, true));
    // The same when the list is whole and only what is asked afterwards fails, each time anew.
    ritmo.algoCambio();
    for (int i = 0; i <= RitmoDeLectura::fallosSeguidos; ++i) {
        ritmo.leida(true, 1000 + 15 * i);
        ritmo.fallo();
    }
    QVERIFY(!ritmo.toca(1165, true, true) && ritmo.toca(1180, true, true));
    ritmo.leida(true, 2000);
    QVERIFY(!ritmo.toca(2015, true, true)); // it let us in
}

QTEST_GUILESS_MAIN(PruebaEscucha)
#include "PruebaEscucha.moc"
