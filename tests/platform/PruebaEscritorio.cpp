#include "platform/AbridorDeDirecciones.h"
#include "platform/Apariencia.h"
#include "platform/Desvelador.h"
#include "platform/GestorDeArchivos.h"
#include "platform/Procesos.h"
#include "support/BusPrivado.h"

#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

qsizetype descriptores()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

class PruebaEscritorio : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QDBusConnection::sessionBus().isConnected()); }
    void sinServiciosNoPasaNada();
    void elCerrojoSeTomaUnaVezYSeSuelta();
    void elAspectoSigueAlSistema();
    void ensenarUnaCarpeta();
    void losProcesosDelOrdenador();

private:
    BusPrivado bus;
};

void PruebaEscritorio::sinServiciosNoPasaNada()
{
    Desvelador desvelador;
    desvelador.despierta();
    desvelador.puedeDormir();
    desvelador.puedeDormir();
    desvelador.despierta();
    QTest::qWait(200);
    const Apariencia apariencia;
    QTest::qWait(200);
    QVERIFY(!apariencia.sistemaOscuro());
}

void PruebaEscritorio::elCerrojoSeTomaUnaVezYSeSuelta()
{
    QVERIFY(bus.servir(u"org.freedesktop.login1"_s, {u"--system"_s, u"--template"_s, u"logind"_s}));
    const auto antes = descriptores();
    {
        Desvelador desvelador;
        desvelador.despierta();
        desvelador.despierta();
        QTRY_COMPARE(descriptores(), antes + 1);
        QCOMPARE(bus.peticiones().count(u" Inhibit "_s), 1);
        QVERIFY2(bus.peticiones().contains(u"idle:sleep"_s), qPrintable(bus.peticiones()));
        desvelador.puedeDormir();
        QCOMPARE(descriptores(), antes);
        desvelador.despierta();
        desvelador.puedeDormir(); // before the answer has come
        QTest::qWait(300);
        QTRY_COMPARE(descriptores(), antes);
        desvelador.despierta();
        QTRY_COMPARE(descriptores(), antes + 1);
    }
    QTRY_COMPARE(descriptores(), antes); // a bus under load hands one over a moment later
}

void PruebaEscritorio::elAspectoSigueAlSistema()
{
    const auto nombre = u"org.freedesktop.portal.Desktop"_s;
    const auto objeto = u"/org/freedesktop/portal/desktop"_s;
    const auto interfaz = u"org.freedesktop.portal.Settings"_s;
    QVERIFY(bus.servir(nombre, {u"--session"_s, nombre, objeto, interfaz}));
    QVERIFY(
        bus.metodo(nombre, objeto, interfaz, {u"Read"_s, u"ss"_s, u"v"_s, u"ret = dbus.UInt32(1, variant_level=1)"_s}));
    Apariencia apariencia;
    QTRY_VERIFY(apariencia.sistemaOscuro());

    const auto avisar = [&](const QString &clave, uint valor) {
        auto aviso = QDBusMessage::createMethodCall(nombre, objeto, u"org.freedesktop.DBus.Mock"_s, u"EmitSignal"_s);
        const QVariantList argumentos{u"org.freedesktop.appearance"_s, clave, QVariant::fromValue(QDBusVariant(valor))};
        aviso << interfaz << u"SettingChanged"_s << u"ssv"_s << QVariant(argumentos);
        QCOMPARE(QDBusConnection::sessionBus().call(aviso).type(), QDBusMessage::ReplyMessage);
    };
    QSignalSpy cambio(&apariencia, &Apariencia::cambio);
    avisar(u"accent-color"_s, 0);
    avisar(u"color-scheme"_s, 2);
    QTRY_VERIFY(!apariencia.sistemaOscuro());
    QCOMPARE(cambio.size(), 1);
}

void PruebaEscritorio::ensenarUnaCarpeta()
{
    const QTemporaryDir carpeta;
    const auto rara = carpeta.filePath(u"Ñu 100% #1"_s);
    QVERIFY(QDir().mkpath(rara));
    const auto nombre = u"org.freedesktop.FileManager1"_s;
    const auto objeto = u"/org/freedesktop/FileManager1"_s;
    QVERIFY(bus.servir(nombre, {u"--session"_s, nombre, objeto, nombre}));
    QVERIFY(bus.metodo(nombre, objeto, nombre, {u"ShowItems"_s, u"ass"_s, QString(), QString()}));
    mostrarEnElGestor(rara);
    QTRY_VERIFY(bus.peticiones().contains(u"ShowItems"_s));
    QVERIFY2(bus.peticiones().contains(u"%C3%91u%20100%25%20%231"_s), qPrintable(bus.peticiones()));

    // Without a file manager on the bus, the desktop's own opener gets the folder.
    bus.retirar();
    QFile abridor(carpeta.filePath(u"xdg-open"_s));
    QVERIFY(abridor.open(QIODevice::WriteOnly));
    abridor.write(
        "#!/bin/sh\nprintf '%s' \"$1\" > \"${0%/*}/abierto.tmp\"\nmv \"${0%/*}/abierto.tmp\" \"${0%/*}/abierto\"\n");
    abridor.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    abridor.close();
    qputenv("PATH", carpeta.path().toUtf8() + ':' + qgetenv("PATH"));
    mostrarEnElGestor(rara);
    QFile abierto(carpeta.filePath(u"abierto"_s));
    QTRY_VERIFY(abierto.exists());
    QVERIFY(abierto.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(abierto.readAll()), rara);

    // Addresses go the same way, whole and in one piece.
    QVERIFY(abierto.remove());
    abrirDireccion(QUrl(u"tel:+34600000000"_s));
    QTRY_VERIFY(abierto.exists());
    QVERIFY(abierto.open(QIODevice::ReadOnly));
    QCOMPARE(abierto.readAll(), QByteArray("tel:+34600000000"));
    QVERIFY(!hayQuienAbra(u"un-esquema-que-nadie-abre"_s));
}

void PruebaEscritorio::losProcesosDelOrdenador()
{
    const auto palabra = u"una-palabra-que-nadie-mas-usa"_s;
    QVERIFY(!hayProcesoCon(palabra));
    QProcess otro;
    otro.start(u"sh"_s, {u"-c"_s, u"read x"_s, palabra});
    QVERIFY(otro.waitForStarted());
    QTRY_VERIFY(hayProcesoCon(palabra));
    otro.kill();
    otro.waitForFinished();
    QVERIFY(!hayProcesoCon(palabra));
    QVERIFY(!hayOtroProcesoDelPrograma());
    otro.start(QCoreApplication::applicationFilePath(), {u"--otro"_s});
    QVERIFY(otro.waitForStarted());
    QTRY_VERIFY(hayOtroProcesoDelPrograma());
    otro.kill();
    otro.waitForFinished();
    QVERIFY(!hayOtroProcesoDelPrograma());
}

int main(int argc, char **argv)
{
    QCoreApplication programa(argc, argv);
    if (programa.arguments().contains(u"--otro"_s))
        return QCoreApplication::exec(); // a second run of the program, for as long as it is let live
    PruebaEscritorio prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "PruebaEscritorio.moc"
