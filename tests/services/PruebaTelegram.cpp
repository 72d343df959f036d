#include "core/Diario.h"
#include "core/Preferencias.h"
#include "core/Tarea.h"
#include "platform/Llavero.h"
#include "services/AvisosPorTelegram.h"
#include "services/Telegram.h"
#include "support/BusPrivado.h"
#include "support/LlaveroPrivado.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto cuenta = u"es.zarabel.vellora.telegram"_s;
const auto token = u"1234567890:ABCDEFGHIJKLMN"_s;

} // namespace

/// Messages to a server of our own that plays Telegram's, over true HTTPS, with a true store of secrets.
class PruebaTelegram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void dondeEsta();
    void ficheros_data();
    void ficheros();
    void envios_data();
    void envios();
    void sinRed();
    void unLentoSeDeja();
    void elInterruptor();
    void alTerminar();

private:
    QString ruta(const QString &nombre) const { return QDir::homePath() + u'/' + nombre; }
    void escribir(const QString &nombre, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(ruta(nombre)).path());
        QFile fichero(ruta(nombre));
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size());
    }
    QByteArray recibido()
    {
        QFile fichero(ruta(u"recibido"_s));
        return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
    }
    /// What came of it: "" when it was sent.
    QString enviar(const QString &texto)
    {
        std::optional<QString> fallo;
        bool listo = false;
        Telegram::enviar(this, texto, [&](const std::optional<QString> &dicho) {
            fallo = dicho;
            listo = true;
        });
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(listo, 30000);
        }();
        return fallo.value_or(QString());
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
    QProcess servidor;
    QByteArray direccion;
};

void PruebaTelegram::initTestCase()
{
    bus = std::make_unique<BusPrivado>();
    llavero = std::make_unique<LlaveroPrivado>();
    QVERIFY(llavero->listo());
    const auto certificado = ruta(u"certificado.pem"_s);
    QCOMPARE(QProcess::execute(u"openssl"_s,
                               {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s, u"2"_s,
                                u"-subj"_s, u"/CN=127.0.0.1"_s, u"-addext"_s, u"subjectAltName=IP:127.0.0.1"_s,
                                u"-keyout"_s, ruta(u"llave.pem"_s), u"-out"_s, certificado}),
             0);
    auto tls = QSslConfiguration::defaultConfiguration();
    tls.addCaCertificates(certificado);
    QSslConfiguration::setDefaultConfiguration(tls);
    servidor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    servidor.start(u"/usr/bin/python3"_s,
                   {QStringLiteral(SERVIDOR), certificado, ruta(u"llave.pem"_s), ruta(u"recibido"_s)});
    QVERIFY(servidor.waitForReadyRead(10000));
    direccion = "https://127.0.0.1:" + servidor.readLine().trimmed();
}

void PruebaTelegram::init()
{
    qputenv("VELLORA_TELEGRAM", direccion);
    Llavero::borrar(cuenta);
    for (const auto &fichero :
         {u"recibido"_s, u".config/vellora/telegram.env"_s, u"proyectos/.env"_s, u".telegram.env"_s})
        QFile::remove(ruta(fichero));
    Preferencias::ponLogico(u"avisarTelegram"_s, false);
}

void PruebaTelegram::cleanupTestCase()
{
    servidor.kill();
    servidor.waitForFinished();
}

void PruebaTelegram::dondeEsta()
{
    using Telegram::Config;
    QVERIFY(!Telegram::configuracion());
    escribir(u".telegram.env"_s, "TELEGRAM_BOT_TOKEN=ultimo\nTELEGRAM_CHAT_ID=1\n");
    escribir(u"proyectos/.env"_s, "TELEGRAM_BOT_TOKEN=solo\nOTRA=x\n");
    QCOMPARE(Telegram::configuracion(), (Config{u"ultimo"_s, u"1"_s})); // one half is passed over
    escribir(u".config/vellora/telegram.env"_s, "TELEGRAM_CHAT_ID=2\r\n\tTELEGRAM_BOT_TOKEN=primero \n");
    QCOMPARE(Telegram::configuracion(), (Config{u"primero"_s, u"2"_s}));
    for (const auto &vale : {u"sin barra"_s, u"|sin token"_s, u"sin chat|"_s, u"|"_s}) {
        QVERIFY(Llavero::guardar(vale, cuenta));
        QCOMPARE(Telegram::configuracion(), (Config{u"primero"_s, u"2"_s}));
    }
    QVERIFY(Telegram::guardar(u"mio"_s, u"3|4"_s));
    QCOMPARE(Telegram::configuracion(), (Config{u"mio"_s, u"3|4"_s}));
    Telegram::olvidar();
    QCOMPARE(Telegram::configuracion(), (Config{u"primero"_s, u"2"_s}));
}

void PruebaTelegram::ficheros_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("chat");
    QTest::newRow("an equals sign inside") << QByteArray("TELEGRAM_CHAT_ID=123=4\nTELEGRAM_BOT_TOKEN=t") << u"123=4"_s;
    QTest::newRow("the last one counts") << QByteArray("TELEGRAM_CHAT_ID=1\nTELEGRAM_BOT_TOKEN=t\nTELEGRAM_CHAT_ID=2")
                                         << u"2"_s;
    QTest::newRow("empty value") << QByteArray("TELEGRAM_CHAT_ID=\nTELEGRAM_BOT_TOKEN=t") << QString();
    QTest::newRow("exported") << QByteArray("export TELEGRAM_CHAT_ID=1\nTELEGRAM_BOT_TOKEN=t") << QString();
    QTest::newRow("no text at all") << QByteArray("\xFF\xFE\0\0", 4) << QString();
}

void PruebaTelegram::ficheros()
{
    QFETCH(QByteArray, bytes);
    escribir(u"uno.env"_s, bytes);
    const auto hallado = Telegram::enFichero(ruta(u"uno.env"_s));
    QTEST(hallado ? hallado->chat : QString(), "chat");
    QVERIFY(!Telegram::enFichero(ruta(u"no-esta.env"_s)) && !Telegram::enFichero(QDir::homePath()));
}

void PruebaTelegram::envios_data()
{
    QTest::addColumn<QString>("chat");
    QTest::addColumn<QString>("dicho");
    QTest::newRow("taken") << u"77"_s << QString();
    QTest::newRow("unauthorized") << u"401"_s << u"Telegram devolvió 401"_s;
    QTest::newRow("sent elsewhere") << u"302"_s << u"Telegram devolvió 302"_s;
    QTest::newRow("out of order") << u"500"_s << u"Telegram devolvió 500"_s;
}

void PruebaTelegram::envios()
{
    QFETCH(QString, chat);
    QCOMPARE(enviar(u"hola"_s), u"No hay Telegram configurado."_s);
    QVERIFY(Telegram::guardar(token, chat));
    QTEST(enviar(u"Una ñ, \"comillas\" y 😀"_s), "dicho");
    QCOMPARE(recibido(), "/bot" + token.toUtf8() + "/sendMessage application/json {\"chat_id\":\"" + chat.toUtf8() +
                             "\",\"text\":\"Una ñ, \\\"comillas\\\" y 😀\"}\n");
}

void PruebaTelegram::sinRed()
{
    QVERIFY(Telegram::guardar(token, u"corta"_s));
    QVERIFY(!enviar(u"hola"_s).isEmpty());
    const auto antes = recibido();
    qputenv("VELLORA_TELEGRAM", "https://127.0.0.1:1");
    const auto dicho = enviar(u"hola"_s);
    QVERIFY2(!dicho.isEmpty() && !dicho.contains(token), qPrintable(dicho));
    // Never in clear, and never to a server whose certificate nobody vouches for.
    qputenv("VELLORA_TELEGRAM", "http://127.0.0.1:1");
    QCOMPARE(enviar(u"hola"_s), u"La configuración de Telegram no vale."_s);
    qputenv("VELLORA_TELEGRAM", QByteArray(direccion).replace("127.0.0.1", "localhost"));
    QVERIFY(!enviar(u"hola"_s).isEmpty());
    QCOMPARE(recibido(), antes);
}

void PruebaTelegram::unLentoSeDeja()
{
    QVERIFY(Telegram::guardar(token, u"lento"_s));
    QElapsedTimer reloj;
    reloj.start();
    QVERIFY(!enviar(u"hola"_s).isEmpty());
    QVERIFY(reloj.elapsed() > 15000);
}

void PruebaTelegram::elInterruptor()
{
    AvisosPorTelegram avisos;
    avisos.poner(true);
    QVERIFY(avisos.encendido() && Preferencias::logico(u"avisarTelegram"_s));
    QTRY_VERIFY(avisos.pidiendoDatos());
    avisos.setProperty("token", u" 1234567890:ABCDEFGH "_s); // 19 without the blanks
    avisos.setProperty("chat", u" 77 "_s);
    QVERIFY(!avisos.datosValen());
    avisos.guardarDatos();
    QVERIFY(avisos.pidiendoDatos() && !Telegram::configuracion());
    avisos.setProperty("token", u" 1234567890:ABCDEFGHI "_s);
    QVERIFY(avisos.datosValen());
    avisos.guardarDatos();
    QVERIFY(!avisos.pidiendoDatos() && avisos.property("token").toString().isEmpty());
    QTRY_VERIFY(avisos.configurado());
    QCOMPARE(Telegram::configuracion(), (Telegram::Config{u"1234567890:ABCDEFGHI"_s, u"77"_s}));
    avisos.probar();
    QVERIFY(avisos.probando());
    QTRY_VERIFY_WITH_TIMEOUT(!avisos.probando(), 10000);
    QCOMPARE(avisos.aviso(), u"Mensaje enviado. Míralo en Telegram."_s);
    avisos.pedirDatos();
    avisos.cancelarDatos();
    QTRY_VERIFY(!avisos.pidiendoDatos());
    QVERIFY(avisos.encendido());
    avisos.poner(false);
    QVERIFY(!avisos.encendido() && !Preferencias::logico(u"avisarTelegram"_s));
    // Two turns of the switch while the store is asked: the last one counts.
    Telegram::olvidar();
    avisos.poner(true);
    avisos.poner(false);
    QTest::qWait(500);
    QVERIFY(!avisos.pidiendoDatos() && !avisos.configurado());
    avisos.poner(true);
    QTRY_VERIFY(avisos.pidiendoDatos());
    avisos.cancelarDatos();
    QTRY_VERIFY(!avisos.encendido());
}

void PruebaTelegram::alTerminar()
{
    QVERIFY(Telegram::guardar(token, u"77"_s));
    AvisosPorTelegram avisos;
    Diario diario;
    Tarea tarea(diario);
    tarea.empezar(u"Copia"_s, {});
    avisos.avisarAlTerminar(tarea, u"No va: están apagados."_s);
    avisos.poner(true);
    avisos.avisarAlTerminar(tarea, u"La copia ha terminado."_s);
    QTest::qWait(500);
    QCOMPARE(recibido(), QByteArray()); // it runs yet
    // The next job begins, ends and is dismissed at once: the word is of the backup's own end all the same.
    tarea.cerrar(true);
    tarea.empezar(u"Otra cosa"_s, {});
    tarea.cerrar(false);
    tarea.cerrarAviso();
    QTRY_VERIFY_WITH_TIMEOUT(recibido().contains("La copia ha terminado."), 8000);
    tarea.empezar(u"Copia"_s, {});
    avisos.avisarAlTerminar(tarea, u"La copia ha terminado."_s);
    tarea.cerrar(false);
    QTRY_VERIFY_WITH_TIMEOUT(recibido().contains("Vellora: la copia NO se completó. Mira la app."), 8000);
    QCOMPARE(recibido().count('\n'), 2);
}

QTEST_GUILESS_MAIN(PruebaTelegram)
#include "PruebaTelegram.moc"
