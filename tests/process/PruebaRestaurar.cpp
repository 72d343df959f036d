#include "backups/RestaurarCopia.h"
#include "core/Diario.h"
#include "core/Tarea.h"
#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/LlaveroPrivado.h"
#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto herramienta = u"/usr/bin/idevicebackup2"_s;
const auto clave = u"rosquillas $ñ"_s;

} // namespace

/// A backup put back by the true tool into the simulated phone.
class PruebaRestaurar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        bus = std::make_unique<BusPrivado>();
        llavero = std::make_unique<LlaveroPrivado>();
        QVERIFY(llavero->listo());
    }
    void init()
    {
        telefono = std::make_unique<TelefonoSimulado>();
        QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
        copias = QDir::homePath() + u"/copias"_s;
        QDir(copias).removeRecursively();
        QVERIFY(QDir().mkpath(copias));
        Llavero::borrar(telefono->udid());
    }
    void cleanup() { telefono.reset(); }
    void sinCifrar();
    void cifrada();
    void conOtraClave();
    void sinClave();
    void cableFuera();
    void laDeOtroIPhone();

private:
    bool ponerClave(const QString &cual)
    {
        return telefono->orden({{u"orden"_s, u"clave_de_copia"_s}, {u"clave"_s, cual}, {u"rondas"_s, 100}})[u"bien"_s]
            .toBool();
    }
    bool copiar()
    {
        return ejecutar(herramienta, {u"-u"_s, telefono->udid(), u"backup"_s, u"--full"_s, copias}).codigo == 0;
    }
    void restaurar()
    {
        restaurarCopia(tarea, telefono->udid(), copias, telefono->udid());
        QVERIFY(tarea.enMarcha());
        QCOMPARE(tarea.titulo(), u"Devolviendo la copia al iPhone"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
        for (const auto &linea : tarea.registro())
            QVERIFY2(!linea.contains(clave), qPrintable(linea));
    }
    QString dominio(const QString &raiz) const
    {
        return telefono->contenido(telefono->udid()) + raiz + u"/HomeDomain"_s;
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
    std::unique_ptr<TelefonoSimulado> telefono;
    QString copias;
    Diario diario;
    Tarea tarea{diario};
};

void PruebaRestaurar::sinCifrar()
{
    QVERIFY(copiar());
    restaurar();
    QCOMPARE(tarea.terminadaBien(), true);
    QCOMPARE(tarea.detalle(), u"Copia devuelta. El iPhone se está reiniciando."_s);
    QCOMPARE(tarea.registro().mid(0, 2), QStringList({u"El iPhone se reiniciará al terminar."_s,
                                                      u"No toques el cable ni cierres la app hasta que acabe."_s}));
    QCOMPARE(tarea.deTotal(), 100);
    QVERIFY(tarea.registro().filter(u"% Finished"_s).isEmpty()); // progress is no log
    const auto devueltos = arbol(dominio(u"/restaurado"_s));
    const auto suyos = arbol(dominio(u"/dominios"_s));
    QVERIFY(devueltos.size() > 5);
    for (auto it = devueltos.cbegin(); it != devueltos.cend(); ++it)
        QCOMPARE(it.value(), suyos.value(it.key()));
}

void PruebaRestaurar::cifrada()
{
    QVERIFY(ponerClave(clave) && copiar());
    QVERIFY(Llavero::guardar(clave, telefono->udid()));
    restaurar();
    QCOMPARE(tarea.terminadaBien(), true);
    QCOMPARE(arbol(dominio(u"/restaurado"_s)), arbol(dominio(u"/dominios"_s)));
}

void PruebaRestaurar::conOtraClave()
{
    QVERIFY(ponerClave(clave) && copiar());
    QVERIFY(Llavero::guardar(u"otra cosa"_s, telefono->udid()));
    restaurar();
    QCOMPARE(tarea.terminadaBien(), false);
    QCOMPARE(tarea.detalle(), u"No se pudo completar (código 49)"_s);
    QVERIFY(!QDir(dominio(u"/restaurado"_s)).exists());
}

void PruebaRestaurar::sinClave()
{
    QVERIFY(ponerClave(clave) && copiar());
    restaurar();
    QCOMPARE(tarea.detalle(), u"No se pudo completar (código 255)"_s);
    QVERIFY(!QDir(dominio(u"/restaurado"_s)).exists());
}

void PruebaRestaurar::cableFuera()
{
    QVERIFY(copiar());
    QVERIFY(telefono
                ->orden({{u"orden"_s, u"cortar"_s},
                         {u"servicio"_s, u"com.apple.mobilebackup2"_s},
                         {u"bytes"_s, 60000},
                         {u"sentido"_s, u"recibido"_s}})[u"bien"_s]
                .toBool());
    const auto antes = arbol(copias);
    restaurar();
    QCOMPARE(tarea.terminadaBien(), false);
    QVERIFY(tarea.detalle().startsWith(u"No se pudo completar (código "_s));
    QCOMPARE(arbol(copias), antes); // the backup itself is as it was
    QVERIFY(procesosCon(telefono->udid()).isEmpty());
}

void PruebaRestaurar::laDeOtroIPhone()
{
    const auto otro = u"00008110-000E54321F00801E"_s;
    QVERIFY(copiar());
    QVERIFY(QDir(copias).rename(telefono->udid(), otro));
    restaurarCopia(tarea, telefono->udid(), copias, otro);
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QCOMPARE(tarea.terminadaBien(), true);
    QVERIFY(arbol(dominio(u"/restaurado"_s)).size() > 5);
}

QTEST_GUILESS_MAIN(PruebaRestaurar)
#include "PruebaRestaurar.moc"
