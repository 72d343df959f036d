#include "backups/Copias.h"
#include "backups/CopiasAutomaticas.h"
#include "core/Preferencias.h"
#include "session/Modelo.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// When plugging a phone in starts a backup, and when it does not. The phone is nobody's, so a backup that starts ends
/// soon and badly; here it only counts that it started.
class PruebaCopiasAutomaticas : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void apagadaNoHaceNada();
    void unDesconocidoNo();
    void unaVezPorEnchufe();
    void laQueFallaNoSeRepiteACadaEnchufe();
    void conTrabajoEnMarchaNo();
    void conCopiaDeHoyNo();
    void laEdadEnPalabras();

private:
    /// As a reading of the phones would bring it.
    void enchufar(const QList<Dispositivo> &cuales)
    {
        const auto antes = modelo->seleccionado() ? std::optional(modelo->seleccionado()->id) : std::nullopt;
        modelo->aplicar(cuales, antes);
        automaticas->trasRefrescar(antes);
    }
    bool empezo()
    {
        const bool si = modelo->tarea().enMarcha();
        if (si)
            [this] {
                QTRY_VERIFY_WITH_TIMEOUT(!modelo->tarea().enMarcha(), 20000);
            }();
        return si;
    }
    void pasaUnDia()
    {
        const auto clave = u"ultimaCopiaAlEnchufar-"_s + iphone.id;
        const auto cuando = QDateTime::fromString(Preferencias::texto(clave), Qt::ISODate);
        QVERIFY(cuando.isValid());
        Preferencias::ponTexto(clave, cuando.addSecs(-86401).toString(Qt::ISODate));
    }
    void ponerCopia(int dias)
    {
        const auto carpeta = modelo->carpetaCopias() + u'/' + iphone.id;
        QDir().mkpath(carpeta);
        QFile manifiesto(carpeta + u"/Manifest.db"_s);
        QVERIFY(manifiesto.open(QIODevice::WriteOnly));
        QVERIFY(manifiesto.setFileTime(QDateTime::currentDateTime().addDays(-dias).addSecs(-60),
                                       QFileDevice::FileModificationTime));
    }

    Dispositivo iphone;
    std::unique_ptr<Modelo> modelo;
    std::unique_ptr<Copias> copias;
    std::unique_ptr<CopiasAutomaticas> automaticas;
};

void PruebaCopiasAutomaticas::init()
{
    iphone.id = u"00008120-0000000000000042"_s;
    iphone.nombre = u"iPhone de nadie"_s;
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    Preferencias::ponLista(u"iPhonesConocidos"_s, {iphone.id});
    Preferencias::ponTexto(u"ultimaCopiaAlEnchufar-"_s + iphone.id, {});
    modelo = std::make_unique<Modelo>();
    copias = std::make_unique<Copias>(*modelo, [](const QString &) { return Llavero::Estado::Hallada; });
    automaticas = std::make_unique<CopiasAutomaticas>(*modelo, *copias);
    automaticas->ponAlEnchufar(true);
    QSignalSpy primera(modelo.get(), &Modelo::refrescado);
    QVERIFY(primera.wait(20000));
}

void PruebaCopiasAutomaticas::cleanup()
{
    automaticas.reset();
    copias.reset();
    modelo.reset();
}

void PruebaCopiasAutomaticas::apagadaNoHaceNada()
{
    automaticas->ponAlEnchufar(false);
    enchufar({iphone});
    QVERIFY(!empezo());
}

void PruebaCopiasAutomaticas::unDesconocidoNo()
{
    Preferencias::ponLista(u"iPhonesConocidos"_s, {});
    enchufar({iphone});
    QVERIFY(!empezo());
}

void PruebaCopiasAutomaticas::unaVezPorEnchufe()
{
    enchufar({iphone});
    QCOMPARE(modelo->tarea().carpetaResultado(), modelo->carpetaCopias()); // where it is looked for later
    QVERIFY(empezo());
    enchufar({iphone}); // the next tick
    QVERIFY(!empezo());
    auto otro = iphone;
    otro.id = u"00008120-0000000000000077"_s; // not known
    enchufar({otro, iphone});
    modelo->seleccionar(otro.id);
    enchufar({otro, iphone});
    modelo->seleccionar(iphone.id);
    enchufar({otro, iphone});
    QVERIFY(!empezo());
}

void PruebaCopiasAutomaticas::laQueFallaNoSeRepiteACadaEnchufe()
{
    enchufar({iphone});
    QVERIFY(automaticas->avisoAlEnchufar().isEmpty());
    QVERIFY(empezo());
    for (int vez = 0; vez < 3; ++vez) {
        enchufar({});
        enchufar({iphone});
        QVERIFY(!empezo());
    }
    QVERIFY(automaticas->avisoAlEnchufar().contains(u"no se completó"_s));
    // The next start of the program knows of it too.
    automaticas = std::make_unique<CopiasAutomaticas>(*modelo, *copias);
    enchufar({});
    enchufar({iphone});
    QVERIFY(!empezo());
    pasaUnDia();
    enchufar({});
    enchufar({iphone});
    QVERIFY(empezo());
    // A cancelled one is not begun again either.
    pasaUnDia();
    enchufar({});
    enchufar({iphone});
    QVERIFY(modelo->tarea().enMarcha());
    modelo->tarea().cancelar();
    QTest::qWait(300);
    enchufar({});
    enchufar({iphone});
    QVERIFY(!empezo());
}

void PruebaCopiasAutomaticas::conTrabajoEnMarchaNo()
{
    modelo->tarea().empezar(u"Otra cosa"_s, {});
    enchufar({iphone});
    QCOMPARE(modelo->tarea().titulo(), u"Otra cosa"_s);
    modelo->tarea().cerrar(true);
}

void PruebaCopiasAutomaticas::conCopiaDeHoyNo()
{
    enchufar({});
    modelo->aplicar({iphone}, {});
    ponerCopia(0);
    automaticas->trasRefrescar({});
    QVERIFY(!empezo());
    // Looked at once for each time that it is plugged in, even when the day has passed since.
    ponerCopia(1);
    automaticas->trasRefrescar({});
    QVERIFY(!empezo());
    enchufar({});
    enchufar({iphone});
    QVERIFY(empezo());
}

void PruebaCopiasAutomaticas::laEdadEnPalabras()
{
    enchufar({});
    QCOMPARE(automaticas->edad(), QString());
    automaticas->ponAlEnchufar(false);
    enchufar({iphone});
    ponerCopia(0);
    QCOMPARE(automaticas->edad(), u"Última copia: hoy, sin comprobar"_s);
    ponerCopia(3);
    QCOMPARE(automaticas->edad(), u"Última copia: hace 3 días, sin comprobar"_s);
}

QTEST_GUILESS_MAIN(PruebaCopiasAutomaticas)
#include "PruebaCopiasAutomaticas.moc"
