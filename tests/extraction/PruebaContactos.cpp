#include "extraction/Contacto.h"
#include "extraction/Extraccion.h"
#include "support/BaseDePrueba.h"
#include "support/TextosHostiles.h"

#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaContactos : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        desde = casa->filePath(u"desde"_s);
        QVERIFY(escribirBase(
            desde + u"/HomeDomain/AddressBook.sqlitedb"_s,
            "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First, Last, Organization, Note, Nickname);"
            "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, value TEXT);"
            "INSERT INTO ABPerson VALUES (1,'Ana','Ñandú',NULL,'una nota',NULL),(2,'álvaro','Zapata','Taller; "
            "Sur',NULL,'Alvi'),"
            "(3,NULL,NULL,'Bar La Esquina',NULL,NULL),(4,NULL,NULL,NULL,NULL,NULL),(5,'  ','Ruiz',NULL,NULL,NULL);"
            "INSERT INTO ABMultiValue VALUES (1,3,' +34 600 000 000 '),(1,3,'+34 600 000 "
            "000'),(1,4,'ana@ejemplo.es'),(1,3,'raro@x'),"
            "(1,22,'https://ejemplo.es'),(1,22,'912345678'),(2,3,'600\n111'),(2,4,NULL),(2,4,'   '),(3,16,'+1555')"));
    }
    void leer();
    void tabla();
    void fotos();
    void vcard();
    void hoja();
    void textosHostilesEnLaHoja();

private:
    std::unique_ptr<QTemporaryDir> casa;
    QString desde;
};

void PruebaContactos::leer()
{
    const auto lista = Extraccion::leerContactos(desde);
    QStringList nombres;
    for (const auto &uno : lista)
        nombres << uno.comoSeLlama();
    QCOMPARE(nombres,
             (QStringList{u"álvaro Zapata"_s, u"Ana Ñandú"_s, u"Bar La Esquina"_s, u"Ruiz"_s, u"Sin nombre"_s}));
    auto ana = lista[1];
    ana.correos.sort(); // in the order of the file, which nobody promises
    ana.telefonos.sort();
    QCOMPARE(ana.id, 1);
    QCOMPARE(ana.telefonos, (QStringList{u"+34 600 000 000"_s, u"912345678"_s}));
    QCOMPARE(ana.correos, (QStringList{u"ana@ejemplo.es"_s, u"raro@x"_s}));
    QCOMPARE(ana.nota, u"una nota"_s);
    QCOMPARE(lista[2].telefonos, QStringList{u"+1555"_s});
    QVERIFY(lista[4].telefonos.isEmpty() && lista[4].correos.isEmpty());
}

void PruebaContactos::tabla()
{
    const auto a = casa->filePath(u"a"_s);
    QCOMPARE(Extraccion::contactos(desde, a), u"Contactos: 12 personas (Contactos.csv)"_s);
    const auto csv = leerFichero(a + u"/Contactos.csv"_s);
    QVERIFY(csv.startsWith("Nombre;Apellidos;Empresa;Teléfono o correo\n"));
    QVERIFY(csv.contains("\nálvaro;Zapata;Taller; Sur;600 111\n"));
    QVERIFY(csv.contains("\n;;Bar La Esquina;+1555\n"));
    QCOMPARE(csv.count('\n'), 13);
}

void PruebaContactos::fotos()
{
    QVERIFY(escribirBase(desde + u"/AddressBookImages.sqlitedb"_s,
                         "CREATE TABLE ABFullSizeImage (record_id INTEGER, data BLOB); CREATE TABLE ABThumbnailImage "
                         "(record_id INTEGER, "
                         "data BLOB); INSERT INTO ABThumbnailImage VALUES (1,x'AA'),(2,x'BB'),(3,x''),(4,NULL);"
                         "INSERT INTO ABFullSizeImage VALUES (2,x'CC00'),(3,x'')"));
    const auto fotos = Extraccion::fotosDeContactos(desde);
    QCOMPARE(fotos.size(), 2);
    QCOMPARE(fotos[1], QByteArray("\xAA"));
    QCOMPARE(fotos[2], QByteArray("\xCC\0", 2));
}

void PruebaContactos::vcard()
{
    const auto fichero = casa->filePath(u"mis contactos.vcf"_s);
    Contacto raro{9, u"Eva; Sol"_s, u"de\nla, O\\"_s, {}, {u"+34 1"_s, u"2"_s}, {u"e@x"_s}, {}};
    QVERIFY(Extraccion::guardarVCard(fichero, {raro, Contacto{1, {}, {}, u"Bar"_s, {}, {}, {}}}));
    QCOMPARE(leerFichero(fichero),
             "BEGIN:VCARD\r\nVERSION:3.0\r\nN:de\\nla\\, O\\\\;Eva\\; Sol;;;\r\nFN:Eva\\; Sol de\\nla\\, O\\\\\r\n"
             "TEL;TYPE=CELL:+34 1\r\nTEL;TYPE=CELL:2\r\nEMAIL:e@x\r\nEND:VCARD\r\n"
             "BEGIN:VCARD\r\nVERSION:3.0\r\nN:;;;;\r\nFN:Bar\r\nORG:Bar\r\nEND:VCARD\r\n");
    QVERIFY(!Extraccion::guardarVCard(u"/proc/no/hay.vcf"_s, {raro}));
}

void PruebaContactos::hoja()
{
    const auto fichero = casa->filePath(u"c.csv"_s);
    QVERIFY(Extraccion::guardarContactosCSV(fichero, Extraccion::leerContactos(desde)));
    const auto lineas = leerFichero(fichero).split('\n');
    QCOMPARE(lineas[0], "Nombre;Apellidos;Empresa;Teléfonos;Correos");
    QCOMPARE(lineas[1], "álvaro;Zapata;Taller, Sur;600");
    const auto ana =
        std::find_if(lineas.begin(), lineas.end(), [](const auto &una) { return una.startsWith("Ana;Ñandú;;"); });
    QVERIFY(ana != lineas.end() && ana->contains("+34 600 000 000") && ana->count(" / ") == 2);
}

/// The table as another program reads it: each person in one row of five columns, with his name as he typed it.
void PruebaContactos::textosHostilesEnLaHoja()
{
    const auto fichero = casa->filePath(u"c.csv"_s);
    QList<Contacto> lista;
    for (const auto &texto : textosHostiles())
        lista << Contacto{lista.size(), texto, texto, texto, {u"600"_s}, {u"a@b.es"_s}, {}};
    QVERIFY(lista.size() >= 80);
    QVERIFY(Extraccion::guardarContactosCSV(fichero, lista));
    QProcess lector;
    lector.start(u"python3"_s, {u"-c"_s,
                                u"import csv, sys\n"
                                "csv.field_size_limit(10**6)\n"
                                "with open(sys.argv[1], encoding='utf-8', newline='\\n') as f:\n"
                                "    filas = list(csv.reader((l for l in f.read().split('\\n') if l), delimiter=';', "
                                "quoting=csv.QUOTE_NONE))\n"
                                "sys.stdout.buffer.write('\\x1e'.join('\\x1f'.join(f) for f in filas).encode())\n"_s,
                                fichero});
    QVERIFY(lector.waitForFinished(30'000));
    QCOMPARE(lector.readAllStandardError(), QByteArray());
    const auto filas = QString::fromUtf8(lector.readAllStandardOutput()).split(QChar(0x1E));
    QCOMPARE(filas.size(), lista.size() + 1);
    for (qsizetype i = 0; i < lista.size(); ++i) {
        const auto celdas = filas[i + 1].split(QChar(0x1F));
        const auto esperado = QString(lista[i].nombre).replace(u';', u',');
        QCOMPARE(celdas, (QStringList{esperado, esperado, esperado, u"600"_s, u"a@b.es"_s}));
    }
}

QTEST_GUILESS_MAIN(PruebaContactos)
#include "PruebaContactos.moc"
