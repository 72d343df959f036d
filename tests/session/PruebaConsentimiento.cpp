#include "session/Consentimiento.h"
#include "session/Modelo.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// A question belongs to one phone and one plan; nothing is done once either is another. There is no polkit in here, so
/// the system's check agrees by itself.
class PruebaConsentimiento : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aceptarYDejar();
    void nombraSuTelefono();
    void seCierraConSuTelefono_data();
    void seCierraConSuTelefono();
    void miraOtraVezAntesDeHacer_data();
    void miraOtraVezAntesDeHacer();
    void deUnaEnUna();

private:
    static Dispositivo telefono(const QString &udid)
    {
        Dispositivo uno;
        uno.id = udid;
        uno.nombre = u"iPhone de "_s + udid;
        uno.modeloCrudo = u"iPhone15,2"_s;
        return uno;
    }
    Pregunta pregunta(const QString &udid)
    {
        return {u"¿Borrar?"_s,
                u"Se borra."_s,
                u"Borrar"_s,
                u"Dejar"_s,
                Cerradura::BorrarFotos,
                udid,
                [this] { return yaNo; },
                [this] {
                    ++hechas;
                }};
    }

    std::unique_ptr<Modelo> modelo;
    std::unique_ptr<Cerradura> cerradura;
    std::unique_ptr<Consentimiento> consentimiento;
    std::optional<QString> yaNo;
    int hechas = 0;
};

void PruebaConsentimiento::init()
{
    modelo = std::make_unique<Modelo>();
    QTRY_VERIFY(!modelo->buscando());
    modelo->aplicar({telefono(u"ANA"_s), telefono(u"LUIS"_s)}, {});
    modelo->seleccionar(u"ANA"_s);
    cerradura = std::make_unique<Cerradura>();
    consentimiento = std::make_unique<Consentimiento>(*modelo, *cerradura);
    yaNo.reset();
    hechas = 0;
}

void PruebaConsentimiento::cleanup()
{
    consentimiento.reset();
    cerradura.reset();
    modelo.reset();
}

void PruebaConsentimiento::aceptarYDejar()
{
    consentimiento->plantear(pregunta(u"ANA"_s));
    QVERIFY(consentimiento->abierto());
    consentimiento->responder(false);
    QVERIFY(!consentimiento->abierto());
    QCOMPARE(hechas, 0);
    consentimiento->plantear(pregunta(u"ANA"_s));
    consentimiento->responder(true);
    consentimiento->responder(true); // a second press finds no question
    QTRY_COMPARE(hechas, 1);
    QVERIFY(consentimiento->aviso().isEmpty());
}

void PruebaConsentimiento::nombraSuTelefono()
{
    consentimiento->plantear(pregunta(u"ANA"_s));
    QCOMPARE(consentimiento->aQuien(), u"iPhone de ANA · iPhone 14 Pro · …ANA"_s);
    consentimiento->responder(false);
    consentimiento->plantear(pregunta(u"LUIS"_s)); // asked for late, the other one is selected
    QVERIFY(!consentimiento->abierto());
    consentimiento->plantear(pregunta(QString()));
    QVERIFY(consentimiento->abierto() && consentimiento->aQuien().isEmpty());
}

void PruebaConsentimiento::seCierraConSuTelefono_data()
{
    QTest::addColumn<bool>("seVa");
    QTest::newRow("another is chosen") << false;
    QTest::newRow("it leaves") << true;
}

void PruebaConsentimiento::seCierraConSuTelefono()
{
    QFETCH(const bool, seVa);
    consentimiento->plantear(pregunta(u"ANA"_s));
    if (seVa)
        modelo->aplicar({telefono(u"LUIS"_s)}, {});
    else
        modelo->seleccionar(u"LUIS"_s);
    QVERIFY(!consentimiento->abierto());
    consentimiento->responder(true); // the click that was already under way
    QTest::qWait(50);
    QCOMPARE(hechas, 0);
}

void PruebaConsentimiento::miraOtraVezAntesDeHacer_data()
{
    QTest::addColumn<int>("queCambia");
    QTest::newRow("the plan") << 0;
    QTest::newRow("a job began") << 1;
}

void PruebaConsentimiento::miraOtraVezAntesDeHacer()
{
    QFETCH(const int, queCambia);
    consentimiento->plantear(pregunta(u"ANA"_s));
    if (queCambia == 0)
        yaNo = u"Ya no vale."_s;
    else
        modelo->tarea().empezar(u"Otro"_s, u"Paso"_s);
    consentimiento->responder(true);
    QTRY_VERIFY(!consentimiento->aviso().isEmpty());
    if (queCambia == 0)
        QCOMPARE(consentimiento->aviso(), u"Ya no vale."_s);
    QCOMPARE(hechas, 0);
    modelo->tarea().cerrar(true);
}

void PruebaConsentimiento::deUnaEnUna()
{
    auto primera = pregunta(u"ANA"_s);
    auto segunda = pregunta(u"ANA"_s);
    primera.titulo = u"una"_s;
    segunda.titulo = u"dos"_s;
    consentimiento->avisar(u"aviso"_s);
    QCOMPARE(consentimiento->aviso(), u"aviso"_s);
    consentimiento->plantear(primera);
    consentimiento->plantear(segunda);
    QVERIFY(consentimiento->titulo() == u"una"_s && consentimiento->aviso().isEmpty());
    consentimiento->cerrarAviso(); // it is not in view: it stays
    consentimiento->responder(false);
    QCOMPARE(consentimiento->titulo(), u"dos"_s);
    consentimiento->responder(false);
    QCOMPARE(consentimiento->aviso(), u"aviso"_s);
    consentimiento->cerrarAviso();
    QVERIFY(consentimiento->aviso().isEmpty());
}

QTEST_GUILESS_MAIN(PruebaConsentimiento)
#include "PruebaConsentimiento.moc"
