#include "core/Diario.h"
#include "core/Tarea.h"
#include "session/OperacionesDeBateria.h"
#include "support/TelefonoSimulado.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// Battery and networks from the phone through the engine to what the window shows.
class PruebaBateriaReal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        telefono = std::make_unique<TelefonoSimulado>();
        QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    }
    void init() { QFile::remove(fichero); }
    void cleanupTestCase() { telefono.reset(); }
    void callada();
    void comoTrabajo();
    void unaMedidaAlDia();
    void historialQueNoSeEntiende();
    void redDelTelefono();
    void sinTelefono();

private:
    /// The text of one measurement, or nothing when it failed.
    QString apuntar()
    {
        QString texto;
        bool acabo = false;
        apuntarBateria(tarea, telefono->udid(), fichero, [&](const QString &dicho) { texto = dicho; });
        connect(
            &tarea, &Tarea::acabada, this, [&] { acabo = true; }, Qt::SingleShotConnection);
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(acabo, 20000);
        }();
        return texto;
    }
    QJsonArray medidas() const
    {
        QFile abierto(fichero);
        return abierto.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(abierto.readAll()).array() : QJsonArray();
    }
    void escribir(const QByteArray &bytes)
    {
        QFile abierto(fichero);
        QVERIFY(abierto.open(QIODevice::WriteOnly) && abierto.write(bytes) == bytes.size());
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    Diario diario;
    Tarea tarea{diario};
    const QString fichero = QDir::homePath() + u"/bateria.json"_s;
};

void PruebaBateriaReal::callada()
{
    const auto salud = saludBateria(telefono->udid());
    QCOMPARE(salud.ciclos, 214);
    QCOMPARE(salud.salud, 91);
    QCOMPARE(salud.grados, 28.9);
    QVERIFY(diario.lista().isEmpty());
}

void PruebaBateriaReal::comoTrabajo()
{
    QVERIFY(
        telefono->orden({{u"orden"_s, u"bateria"_s}, {u"nivel"_s, 100}, {u"cargando"_s, false}})[u"bien"_s].toBool());
    std::optional<DatosBateria> pila;
    bool acabo = false;
    mirarBateria(tarea, telefono->udid(), fichero,
                 [&](const std::optional<DatosBateria> &datos, const HistorialBateria &) {
                     pila = datos;
                     acabo = true;
                 });
    QTRY_VERIFY_WITH_TIMEOUT(acabo, 20000);
    QVERIFY(pila && tarea.terminadaBien() == true);
    QCOMPARE(tarea.titulo(), u"Mirando la batería"_s);
    QCOMPARE(tarea.detalle(), u"91% de salud · 214 ciclos"_s);
    QVERIFY(pila->llena && pila->enchufado && !pila->cargando && !pila->critica);
    QCOMPARE(pila->perdido(), 288);
    QCOMPARE(pila->voltios(), 4.3);
    QCOMPARE(pila->actual, 2912);
}

void PruebaBateriaReal::unaMedidaAlDia()
{
    QVERIFY(
        apuntar().endsWith(u"Esta es la primera medición. Repítelo de vez en cuando y podrás ver cómo evoluciona."_s));
    QVERIFY(apuntar().contains(u"Esta es la primera medición."_s)); // still today's
    QCOMPARE(medidas().size(), 1);
    QCOMPARE(medidas()[0][u"fecha"_s].toString(), QDate::currentDate().toString(u"dd/MM/yyyy"_s));
    QCOMPARE(medidas()[0][u"salud"_s].toInt(), 91);

    escribir("[{\"fecha\":\"01/02/2025\",\"salud\":97,\"otra cosa\":1}]");
    QCOMPARE(apuntar(), u"Tu batería está al 91% de cuando era nueva, con 214 ciclos de carga.\n\n"
                        "Desde el 01/02/2025 ha bajado 6 puntos."_s);
    QCOMPARE(medidas().size(), 2);
    QCOMPARE(medidas()[0][u"otra cosa"_s].toInt(), 1);
    QCOMPARE(leerHistorialBateria(fichero).last().second, 91);
    escribir("[{\"fecha\":\"01/02/2025\",\"salud\":90}]");
    QVERIFY(apuntar().endsWith(u"Desde el 01/02/2025 no ha bajado."_s));
}

void PruebaBateriaReal::historialQueNoSeEntiende()
{
    escribir("esto era mío");
    QVERIFY(!apuntar().isEmpty());
    QCOMPARE(medidas().size(), 1);
    const auto apartados = QDir(QDir::homePath()).entryList({u"bateria.json.ilegible-*"_s});
    QCOMPARE(apartados.size(), 1);
    QFile apartado(QDir::homePath() + u'/' + apartados[0]);
    QVERIFY(apartado.open(QIODevice::ReadOnly));
    QCOMPARE(apartado.readAll(), QByteArray("esto era mío"));
    // Nowhere to write: said, and nothing lost.
    QFile::remove(fichero);
    QVERIFY(QDir().mkpath(fichero));
    QVERIFY(apuntar().isEmpty());
    QCOMPARE(tarea.terminadaBien(), false);
    QVERIFY(QDir().rmdir(fichero));
}

void PruebaBateriaReal::redDelTelefono()
{
    const auto red = redDe(telefono->udid());
    QVERIFY(red);
    QCOMPARE(red->operador, u"Movil Ejemplo"_s);
    QCOMPARE(red->simEstado, u"Lista"_s);
    QVERIFY(red->wifiOn && !red->avion && !red->telefono.isEmpty() && !red->hayAlgo());
    const auto poner = [this](const QString &clave, const QJsonValue &valor) {
        return telefono
            ->orden({{u"orden"_s, u"valor"_s},
                     {u"dominio"_s, QString()},
                     {u"clave"_s, clave},
                     {u"valor"_s, valor}})[u"bien"_s]
            .toBool();
    };
    QVERIFY(poner(u"SIMStatus"_s, u"kCTSIMSupportSIMStatusNotInserted"_s));
    QVERIFY(poner(u"CarrierBundleInfoArray"_s, QJsonValue::Null));
    QVERIFY(poner(u"PhoneNumber"_s, QJsonValue::Null));
    const auto sin = redDe(telefono->udid());
    QVERIFY(sin && sin->hayAlgo());
    QCOMPARE(sin->simEstado, u"No hay tarjeta SIM"_s);
    QCOMPARE(sin->operador, u"Desconocido"_s);
    QCOMPARE(sin->telefono, QString());
}

void PruebaBateriaReal::sinTelefono()
{
    QVERIFY(telefono->orden(u"bloquear"_s));
    QVERIFY(!saludBateria(telefono->udid()).ciclos);
    QVERIFY(!redDe(telefono->udid()));
    QVERIFY(apuntar().isEmpty());
    QVERIFY(tarea.registro().last().startsWith(u"El iPhone está bloqueado."_s));
    QVERIFY(telefono->orden(u"desconectar"_s));
    QVERIFY(apuntar().isEmpty());
    QVERIFY(tarea.registro().last().startsWith(u"No veo ese iPhone."_s));
    QVERIFY(!QFile::exists(fichero));
}

QTEST_GUILESS_MAIN(PruebaBateriaReal)
#include "PruebaBateriaReal.moc"
