#include "extraction/Contacto.h"
#include "platform/AgendaDelMac.h"
#include "support/BaseDePrueba.h"
#include "support/BusPrivado.h"
#include "support/TextosHostiles.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The true address book service, started by a private session bus for an empty home.
class PruebaAgenda : public QObject
{
    Q_OBJECT

private slots:
    void sinServicio();
    void crearBuscarYBorrar();
    void cambiar();
    void textosHostilesDeIdaYVuelta();
    void laVCardSeImporta();

private:
    static bool deControl(const QString &texto)
    {
        return std::any_of(texto.begin(), texto.end(),
                           [](QChar letra) { return letra.category() == QChar::Other_Control && letra != u'\t'; });
    }
    static const FichaDeAgenda &ana()
    {
        static const FichaDeAgenda ficha{
            u"Ana"_s, u"Ñandú; hija"_s, u"Bar, S.L."_s, {u"+34 600 11 22 33"_s}, {u"ana@ejemplo.es"_s}};
        return ficha;
    }

    std::optional<BusPrivado> bus;
};

/// Before any bus is set up for this process the service cannot be reached; nothing may hang or fall.
void PruebaAgenda::sinServicio()
{
    QVERIFY(!AgendaDelMac::pedirPermiso());
    QCOMPARE(AgendaDelMac::guardar(ana()), u"No se pudo preparar el cambio."_s);
    QCOMPARE(AgendaDelMac::actualizar(ana(), ana()), u"No se pudo preparar el cambio."_s);
    QCOMPARE(AgendaDelMac::borrar(ana()).fallo, u"No se pudo preparar el borrado."_s);
    QVERIFY(!AgendaDelMac::buscar(ana()));
    bus.emplace();
    QVERIFY(AgendaDelMac::pedirPermiso());
}

void PruebaAgenda::crearBuscarYBorrar()
{
    QVERIFY(!AgendaDelMac::buscar(ana()));
    QVERIFY(!AgendaDelMac::yaEsta(ana()));
    QCOMPARE(AgendaDelMac::guardar(ana()), std::nullopt);
    QCOMPARE(AgendaDelMac::buscar(ana()), ana());
    // Known again however the number is written, unless there is more to tell, or somebody else has the telephone.
    auto otra = ana();
    QVERIFY(AgendaDelMac::yaEsta(otra));
    otra.telefonos << u"+34 900 000 000"_s;
    QVERIFY(!AgendaDelMac::yaEsta(otra));
    otra = ana();
    otra.nombre = u"Otra"_s;
    QVERIFY(!AgendaDelMac::yaEsta(otra));
    // By the digits of a number, whatever the name.
    QVERIFY(AgendaDelMac::encontrarParecido(u"Otra"_s, u"Persona"_s, {u"34-600112233"_s}));
    QVERIFY(!AgendaDelMac::encontrarParecido(u"Otra"_s, u"Persona"_s, {u"600112233"_s}));
    QVERIFY(!AgendaDelMac::encontrarParecido(u"Ana"_s, {}, {}));
    QVERIFY(!AgendaDelMac::encontrarParecido({}, {}, {}));
    // Somebody with nothing but a company is not found by two empty names.
    const FichaDeAgenda bar{{}, {}, u"Bar La Esquina"_s, {}, {}};
    QCOMPARE(AgendaDelMac::guardar(bar), std::nullopt);
    QVERIFY(!AgendaDelMac::buscar(bar));
    auto borrado = AgendaDelMac::borrar(ana());
    QVERIFY(borrado.estaba && !borrado.fallo);
    borrado = AgendaDelMac::borrar(ana());
    QVERIFY(!borrado.estaba && !borrado.fallo);
}

void PruebaAgenda::cambiar()
{
    auto conDos = ana();
    conDos.telefonos << u"911222333"_s;
    QCOMPARE(AgendaDelMac::guardar(conDos), std::nullopt);
    auto nueva = ana();
    nueva.apellidos = u"Núñez"_s;
    nueva.empresa.clear();
    nueva.telefonos = {u"+34 600 99 88 77"_s};
    nueva.correos = {u"ana@ejemplo.es"_s, u"otra@ejemplo.es"_s};
    // What the phone knew of is changed; the number that only the computer has stays.
    QCOMPARE(AgendaDelMac::actualizar(ana(), nueva), std::nullopt);
    QVERIFY(!AgendaDelMac::buscar(ana()));
    auto hay = AgendaDelMac::buscar(nueva);
    QVERIFY(hay);
    hay->telefonos.sort();
    hay->correos.sort();
    QCOMPARE(hay->telefonos, (QStringList{u"+34 600 99 88 77"_s, u"911222333"_s}));
    QCOMPARE(hay->correos, nueva.correos);
    QCOMPARE(hay->empresa, QString());
    QCOMPARE(AgendaDelMac::actualizar(ana(), nueva), u"No se pudo preparar el cambio."_s);
    QVERIFY(AgendaDelMac::borrar(nueva).estaba);
}

void PruebaAgenda::textosHostilesDeIdaYVuelta()
{
    for (const auto &texto : textosHostiles()) {
        if (deControl(texto) || texto.trimmed() != texto)
            continue; // the service itself drops what no name has
        const FichaDeAgenda ficha{texto, u"Hostil"_s, texto, {u"600"_s}, {}};
        QVERIFY2(!AgendaDelMac::guardar(ficha), qPrintable(texto.left(60)));
        const auto vuelta = AgendaDelMac::buscar(ficha);
        QVERIFY2(vuelta, qPrintable(texto.left(60)));
        QCOMPARE(*vuelta, ficha);
        QVERIFY(AgendaDelMac::borrar(ficha).estaba);
    }
}

/// The file for other programs, taken in by another program's own reader: each person arrives as he was.
void PruebaAgenda::laVCardSeImporta()
{
    const QTemporaryDir casa;
    const auto fichero = casa.filePath(u"c.vcf"_s);
    QList<Contacto> lista{{1, u"Ana"_s, u"Ñandú; hija"_s, u"Bar, S.L."_s, {u"+34 600"_s, u"911"_s}, {u"a@e.es"_s}, {}}};
    for (const auto &texto : textosHostiles()) {
        if (!deControl(texto))
            lista << Contacto{lista.size() + 1, texto.trimmed(), u"Hostil"_s, texto.trimmed(), {u"600"_s}, {}, {}};
    }
    QVERIFY(lista.size() > 80);
    QVERIFY(Extraccion::guardarVCard(fichero, lista));
    QCOMPARE(QProcess::execute(QStringLiteral(IMPORTA_TARJETAS), {fichero}), 0);
    for (const auto &uno : lista) {
        const FichaDeAgenda ficha{uno.nombre, uno.apellidos, uno.empresa, uno.telefonos, uno.correos};
        const auto hay = AgendaDelMac::encontrarParecido(uno.nombre, uno.apellidos, {});
        QVERIFY2(hay, qPrintable(uno.nombre.left(60)));
        QCOMPARE(*hay, ficha);
    }
}

QTEST_GUILESS_MAIN(PruebaAgenda)
#include "PruebaAgenda.moc"
