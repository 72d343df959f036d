#include "support/BusPrivado.h"
#include "support/TelefonoSimulado.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// A desktop's bar, as far as a program needs one to put its icon there (StatusNotifierItem).
class Barra : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hay CONSTANT)
    Q_PROPERTY(int ProtocolVersion READ version CONSTANT)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER iconos)

public:
    bool hay() const { return true; }
    int version() const { return 0; }
    QStringList iconos; ///< names on the bus of those who put one

public slots:
    void RegisterStatusNotifierItem(const QString &) { iconos << message().service(); }
    void RegisterStatusNotifierHost(const QString &) {}
};

/// The true program with a bar, a phone and a second start.
class PruebaBarra : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase() { telefono.reset(); }
    void unIconoConSuMenu();
    void unaSolaVentana();
    void unaQueMurioNoEstorba();

private:
    std::unique_ptr<QProcess> arrancar()
    {
        auto proceso = std::make_unique<QProcess>();
        proceso->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        proceso->start(QStringLiteral(VELLORA), QStringList());
        return proceso;
    }
    QString llamar(const QStringList &que)
    {
        return QString::fromUtf8(
            ejecutar(u"gdbus"_s, QStringList{u"call"_s, u"--session"_s, u"--dest"_s, barra.iconos.last(),
                                             u"--object-path"_s, u"/MenuBar"_s, u"--method"_s} +
                                     que)
                .salida);
    }
    QString menu() { return llamar({u"com.canonical.dbusmenu.GetLayout"_s, u"0"_s, u"--"_s, u"-1"_s, u"[]"_s}); }
    QStringList rotulos()
    {
        static const QRegularExpression rotulo(u"'label': <'([^']*)'>"_s);
        QStringList lista;
        auto hallados = rotulo.globalMatch(menu());
        while (hallados.hasNext())
            lista << hallados.next().captured(1).remove(u'_');
        return lista;
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<TelefonoSimulado> telefono;
    Barra barra;
};

void PruebaBarra::initTestCase()
{
    bus = std::make_unique<BusPrivado>();
    auto sesion = QDBusConnection::sessionBus();
    QVERIFY(sesion.registerObject(u"/StatusNotifierWatcher"_s, &barra,
                                  QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties));
    QVERIFY(sesion.registerService(u"org.kde.StatusNotifierWatcher"_s));
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
}

void PruebaBarra::cleanup()
{
    barra.iconos.clear();
}

void PruebaBarra::unIconoConSuMenu()
{
    // Staying in the bar when its window closes must not keep it from ending.
    QDir().mkpath(QDir::homePath() + u"/.config/vellora"_s);
    QFile ajustes(QDir::homePath() + u"/.config/vellora/vellora.conf"_s);
    QVERIFY(ajustes.open(QIODevice::WriteOnly) && ajustes.write("[General]\nseguirEnLaBarra=true\n") > 0);
    ajustes.close();
    const auto vellora = arrancar();
    QTRY_VERIFY_WITH_TIMEOUT(!barra.iconos.isEmpty(), 20000);
    const QStringList conTelefono{u"iPhone de Marta · 38,2 GB libres"_s,
                                  u"Copiar fotos y vídeos"_s,
                                  u"Hacer copia de seguridad"_s,
                                  u"Abrir mi carpeta"_s,
                                  u"Abrir Vellora"_s,
                                  u"Salir"_s};
    QTRY_COMPARE_WITH_TIMEOUT(rotulos(), conTelefono, 20000);
    QVERIFY(telefono->orden(u"desconectar"_s));
    // The next look at the cable is up to a quarter of a minute away.
    QTRY_COMPARE_WITH_TIMEOUT(rotulos().value(0), u"No hay ningún iPhone conectado"_s, 30000);
    QCOMPARE(rotulos().size(), 4);
    QVERIFY(telefono->orden(u"conectar"_s));
    static const QRegularExpression salir(u"\\((\\d+), \\{[^}]*'label': <'_?Salir'>"_s);
    const auto numero = salir.match(menu()).captured(1);
    QVERIFY(!numero.isEmpty());
    llamar({u"com.canonical.dbusmenu.Event"_s, numero, u"clicked"_s, u"<''>"_s, u"0"_s});
    QVERIFY(vellora->waitForFinished(10000));
    QCOMPARE(vellora->exitCode(), 0);
}

void PruebaBarra::unaSolaVentana()
{
    const auto primera = arrancar();
    QTRY_VERIFY_WITH_TIMEOUT(!barra.iconos.isEmpty(), 20000);
    const auto segunda = arrancar();
    QVERIFY(segunda->waitForFinished(10000));
    QCOMPARE(segunda->exitCode(), 0);
    QCOMPARE(primera->state(), QProcess::Running);
    QCOMPARE(barra.iconos.size(), 1);
    primera->terminate();
    QVERIFY(primera->waitForFinished(10000));
}

void PruebaBarra::unaQueMurioNoEstorba()
{
    {
        const auto muerta = arrancar();
        QTRY_VERIFY_WITH_TIMEOUT(!barra.iconos.isEmpty(), 20000);
        muerta->kill();
        QVERIFY(muerta->waitForFinished(10000));
    }
    barra.iconos.clear();
    const auto otra = arrancar();
    QTRY_VERIFY_WITH_TIMEOUT(!barra.iconos.isEmpty(), 20000);
    otra->terminate();
    QVERIFY(otra->waitForFinished(10000));
}

QTEST_MAIN(PruebaBarra)
#include "PruebaBarra.moc"
