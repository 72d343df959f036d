#include "session/Detector.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaDetector : public QObject
{
    Q_OBJECT

private slots:
    void lasLineasCortasNoSonTelefonos();
    void losPares_data();
    void losPares();
    void loQueNoSePudoLeerQuedaAusente();
    void elNombreComercial();
};

void PruebaDetector::lasLineasCortasNoSonTelefonos()
{
    QCOMPARE(Detector::udidsEn(u" 00008120-001A2B3C4D5E6F70\t\n\nCORTO12345\nONCE1234567\nERROR\n"_s),
             (QStringList{u"00008120-001A2B3C4D5E6F70"_s, u"ONCE1234567"_s}));
    QVERIFY(Detector::udidsEn({}).isEmpty());
    QCOMPARE(Detector::valorEn(u" Ñu: el 1 \n"_s), u"Ñu: el 1"_s);
    QVERIFY(!Detector::valorEn(u" \n"_s));
    // A phone that left in between is not one of this name.
    QVERIFY(!Detector::valorEn(u"ERROR: Device 00008120-001A2B3C4D5E6F70 not found!\n"_s));
    QVERIFY(!Detector::valorEn(u"ERROR: No device found!\n"_s));
}

void PruebaDetector::losPares_data()
{
    using Pares = QMap<QString, QString>;
    QTest::addColumn<QString>("salida");
    QTest::addColumn<Pares>("pares");
    QTest::newRow("a value with colons") << u"Hora: 10:20:30\n"_s << Pares{{u"Hora"_s, u"10:20:30"_s}};
    QTest::newRow("no value") << u"Clave:\nOtra: 1\n"_s << Pares{{u"Otra"_s, u"1"_s}};
    QTest::newRow("no key") << u": 5\nnada\n"_s << Pares{};
    QTest::newRow("the last one stays") << u"A: 1\n\tA:\t2 \n"_s << Pares{{u"A"_s, u"2"_s}};
}

void PruebaDetector::losPares()
{
    QFETCH(QString, salida);
    QTEST(Detector::paresEn(salida), "pares");
}

void PruebaDetector::loQueNoSePudoLeerQuedaAusente()
{
    const auto udid = u"00008120-001A2B3C4D5E6F70"_s;
    const auto lleno = Detector::componer(
        udid, u"Ñu"_s, {{u"BatteryCurrentCapacity"_s, u"+87"_s}, {u"BatteryIsCharging"_s, u"true"_s}},
        {{u"AmountDataAvailable"_s, u"5000000000"_s},
         {u"TotalDataCapacity"_s, u"1"_s},
         {u"TotalDiskCapacity"_s, u"256000000000"_s}},
        u"iPhone15,2"_s, u"17.5.1"_s);
    QCOMPARE(lleno.bateria, 87);
    QVERIFY(lleno.cargando);
    QCOMPARE(lleno.libresBytes, 5000000000);
    QCOMPARE(lleno.totalBytes, 256000000000);
    QCOMPARE(lleno.udidCorto(), u"5E6F70"_s);

    const auto vacio = Detector::componer(
        u"abc"_s, u"Ñu"_s, {{u"BatteryCurrentCapacity"_s, u"mucha"_s}, {u"BatteryIsCharging"_s, u"True"_s}},
        {{u"TotalDiskCapacity"_s, u"?"_s}, {u"TotalDataCapacity"_s, u"7"_s}}, {}, {});
    QVERIFY(!vacio.bateria && !vacio.cargando && !vacio.libresBytes);
    QVERIFY(!vacio.totalBytes); // the key that is there was chosen, though it cannot be read
    QCOMPARE(vacio.sistema, u"—"_s);
    QCOMPARE(vacio.modelo(), u"desconocido"_s);
    QCOMPARE(vacio.udidCorto(), u"abc"_s);
}

void PruebaDetector::elNombreComercial()
{
    Dispositivo uno;
    for (const auto &[crudo, nombre] : {std::pair{u"iPhone10,6"_s, u"iPhone X"_s},
                                        {u"iPhone14,6"_s, u"iPhone SE (3.ª gen)"_s},
                                        {u"iPhone18,2"_s, u"iPhone 17 Pro Max"_s},
                                        {u"iPhone9,1"_s, u"iPhone9,1"_s}}) {
        uno.modeloCrudo = crudo;
        QCOMPARE(uno.modelo(), nombre);
    }
}

QTEST_GUILESS_MAIN(PruebaDetector)
#include "PruebaDetector.moc"
