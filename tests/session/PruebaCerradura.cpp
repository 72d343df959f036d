#include "core/Preferencias.h"
#include "session/Cerradura.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto laSuya = u"clave de prueba"_s;
const auto noHayComo = u"Este Mac no tiene huella ni contraseña configuradas."_s;
const auto noSePudo = u"No se pudo comprobar. Inténtalo otra vez."_s;

/// A person who types this password into the system's question.
class Persona
{
public:
    explicit Persona(const QString &clave)
    {
        auto entorno = QProcessEnvironment::systemEnvironment();
        entorno.remove(u"DBUS_SYSTEM_BUS_ADDRESS"_s); // the agent believes it
        proceso.setProcessEnvironment(entorno);
        proceso.start(u"/usr/bin/python3"_s,
                      {QStringLiteral(AGENTE), QString::number(QCoreApplication::applicationPid()), clave});
        listo = proceso.waitForReadyRead(10000);
    }
    ~Persona()
    {
        proceso.kill();
        proceso.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Persona)

    bool listo = false;

private:
    QProcess proceso;
};

} // namespace

/// The lock against the system's true check. With CON_POLKIT it runs under a true polkitd as a person with a password;
/// without, there is nobody to ask.
class PruebaCerradura : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Another bus, on which anybody could answer: not to be believed.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    }
    void sinNadieAQuienPreguntar();
    void seVioYaNoEsta();
    void nadieQueEnsenaLaPregunta();
    void callaElQuePregunta();
    void laClaveBuena();
    void nadieTrasHaberlaPasado();
    void laClaveMala();
    void cadaMotivo();
    void sinUsoSeCierra();

private:
    static bool hayPolkit() { return qEnvironmentVariableIsSet("CON_POLKIT"); }
};

#define SI_HAY_POLKIT()                                                                                                \
    if (!hayPolkit())                                                                                                  \
        QSKIP("needs con-polkit");

void PruebaCerradura::sinNadieAQuienPreguntar()
{
    if (hayPolkit())
        QSKIP("there is somebody");
    Cerradura cerradura;
    QVERIFY(!cerradura.abierta());
    QVERIFY(cerradura.promesa().contains(u"se cierra sola"_s));
    cerradura.abrir();
    QVERIFY(cerradura.abierta() && !cerradura.comprobando());
    QCOMPARE(cerradura.motivoFallo(), noHayComo);
    bool confirmado = false;
    cerradura.confirmar(Cerradura::DevolverCopia, [&](bool si) { confirmado = si; });
    QVERIFY(confirmado);
    // What could not be opened again is not closed, and nothing is promised.
    QVERIFY(!cerradura.promesa().contains(u"se cierra sola"_s) && !cerradura.promesaCorta().contains(u"pedirá"_s));
    cerradura.cerrarAhora();
    cerradura.ponUltimoUso(QDateTime::currentDateTimeUtc().addDays(-1));
    cerradura.revisarInactividad();
    QVERIFY(cerradura.abierta());
}

void PruebaCerradura::seVioYaNoEsta()
{
    if (hayPolkit())
        QSKIP("there is somebody");
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    Cerradura cerradura;
    cerradura.abrir();
    std::optional<bool> confirmado;
    cerradura.confirmar(Cerradura::DevolverCopia, [&](bool si) { confirmado = si; });
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    QVERIFY(!cerradura.abierta() && !cerradura.comprobando());
    QVERIFY(cerradura.motivoFallo().startsWith(u"Este ordenador comprobaba que eres tú"_s));
    QCOMPARE(confirmado, std::optional(false));
}

void PruebaCerradura::nadieQueEnsenaLaPregunta()
{
    SI_HAY_POLKIT();
    Cerradura cerradura;
    cerradura.abrir();
    QVERIFY(cerradura.comprobando() && !cerradura.abierta());
    QTRY_VERIFY_WITH_TIMEOUT(!cerradura.comprobando(), 20000);
    QVERIFY(cerradura.abierta());
    QCOMPARE(cerradura.motivoFallo(), noHayComo);
}

void PruebaCerradura::callaElQuePregunta()
{
    SI_HAY_POLKIT();
    const auto pedir = [](const QString &que) {
        QFile fichero(QDir::homePath() + u'/' + que);
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.close();
        QTRY_VERIFY_WITH_TIMEOUT(!fichero.exists(), 10000);
    };
    pedir(u"callar"_s);
    Cerradura cerradura;
    cerradura.abrir();
    QTRY_VERIFY_WITH_TIMEOUT(!cerradura.comprobando(), 20000);
    QVERIFY(!cerradura.abierta());
    QCOMPARE(cerradura.motivoFallo(), noSePudo);
    std::optional<bool> confirmado;
    cerradura.confirmar(Cerradura::BorrarFotos, [&](bool si) { confirmado = si; });
    QTRY_VERIFY_WITH_TIMEOUT(confirmado, 20000);
    QCOMPARE(*confirmado, false);
    pedir(u"hablar"_s);
}

void PruebaCerradura::nadieTrasHaberlaPasado()
{
    SI_HAY_POLKIT();
    Cerradura cerradura;
    cerradura.abrir();
    QTRY_VERIFY_WITH_TIMEOUT(!cerradura.comprobando(), 20000);
    QVERIFY(!cerradura.abierta());
    QVERIFY(cerradura.motivoFallo().startsWith(u"Este ordenador comprobaba que eres tú"_s));
}

void PruebaCerradura::laClaveBuena()
{
    SI_HAY_POLKIT();
    const Persona duena(laSuya);
    QVERIFY(duena.listo);
    Cerradura cerradura;
    cerradura.abrir();
    cerradura.abrir(); // one question at a time
    QVERIFY(cerradura.comprobando());
    QTRY_VERIFY_WITH_TIMEOUT(!cerradura.comprobando(), 20000);
    QVERIFY(cerradura.abierta());
    QCOMPARE(cerradura.motivoFallo(), QString());
    // Asked again each time: an answer is not kept.
    cerradura.cerrarAhora();
    cerradura.abrir();
    QVERIFY(!cerradura.abierta());
    QTRY_VERIFY_WITH_TIMEOUT(cerradura.abierta(), 20000);
}

void PruebaCerradura::laClaveMala()
{
    SI_HAY_POLKIT();
    const Persona otra(u"otra cosa"_s);
    QVERIFY(otra.listo);
    Cerradura cerradura;
    cerradura.abrir();
    QTRY_VERIFY_WITH_TIMEOUT(!cerradura.comprobando(), 60000);
    QVERIFY(!cerradura.abierta());
    QCOMPARE(cerradura.motivoFallo(), noSePudo);
    std::optional<bool> confirmado;
    cerradura.confirmar(Cerradura::DevolverCopia, [&](bool si) { confirmado = si; });
    QTRY_VERIFY_WITH_TIMEOUT(confirmado, 60000);
    QCOMPARE(*confirmado, false);
}

void PruebaCerradura::cadaMotivo()
{
    SI_HAY_POLKIT();
    const Persona duena(laSuya);
    QVERIFY(duena.listo);
    Cerradura cerradura;
    const auto motivos = QMetaEnum::fromType<Cerradura::Motivo>();
    for (int i = 0; i < motivos.keyCount(); ++i) {
        std::optional<bool> confirmado;
        cerradura.confirmar(static_cast<Cerradura::Motivo>(motivos.value(i)), [&](bool si) { confirmado = si; });
        QTRY_VERIFY_WITH_TIMEOUT(confirmado, 20000);
        QVERIFY2(*confirmado, motivos.key(i)); // one that polkit does not know would be refused
    }
}

void PruebaCerradura::sinUsoSeCierra()
{
    SI_HAY_POLKIT();
    const Persona duena(laSuya);
    QVERIFY(duena.listo);
    Cerradura cerradura;
    const auto abrir = [&] {
        cerradura.abrir();
        QTRY_VERIFY_WITH_TIMEOUT(cerradura.abierta(), 20000);
    };
    abrir();
    cerradura.revisarInactividad();
    QVERIFY(cerradura.abierta());
    const auto hace = [&](qint64 segundos) {
        cerradura.ponUltimoUso(QDateTime::currentDateTimeUtc().addSecs(-segundos));
        cerradura.revisarInactividad();
        return cerradura.abierta();
    };
    QVERIFY(hace(299) && hace(300));
    QVERIFY(!hace(301));
    abrir();
    QVERIFY(hace(290));
    cerradura.marcarUso();
    cerradura.revisarInactividad();
    QVERIFY(cerradura.abierta());
    QVERIFY(!hace(86400));
}

QTEST_GUILESS_MAIN(PruebaCerradura)
#include "PruebaCerradura.moc"
