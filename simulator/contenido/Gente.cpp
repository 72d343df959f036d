#include "contenido/Contexto.h"

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

const std::vector<QString> nombres{
    u"Lucía"_s,  u"Martín"_s,  u"Sofía"_s,  u"Hugo"_s,    u"Valeria"_s, u"Íñigo"_s,   u"Noelia"_s,  u"Begoña"_s,
    u"Andrés"_s, u"Rocío"_s,   u"Óscar"_s,  u"Nerea"_s,   u"Xoán"_s,    u"Montse"_s,  u"Aitana"_s,  u"Gonzalo"_s,
    u"Fátima"_s, u"Youssef"_s, u"Iratxe"_s, u"Ángela"_s,  u"Joaquín"_s, u"Pilar"_s,   u"Ramón"_s,   u"Concha"_s,
    u"Álvaro"_s, u"Mireia"_s,  u"Jordi"_s,  u"Inés"_s,    u"Bruno"_s,   u"Candela"_s, u"Mateo"_s,   u"Carmen"_s,
    u"Wei"_s,    u"Ioana"_s,   u"Kofi"_s,   u"Daniela"_s, u"Saúl"_s,    u"Maialen"_s, u"Eulàlia"_s, u"Tomás"_s};

const std::vector<QString> apellidos{u"García"_s, u"Núñez"_s,      u"Fernández"_s, u"Ibáñez"_s,   u"Martínez"_s,
                                     u"Peña"_s,   u"Etxeberria"_s, u"Ortiz"_s,     u"Muñoz"_s,    u"Castaño"_s,
                                     u"Puig"_s,   u"Rodríguez"_s,  u"Vázquez"_s,   u"Domènech"_s, u"Alonso"_s,
                                     u"Güell"_s,  u"Benali"_s,     u"Popescu"_s,   u"Chen"_s,     u"Mensah"_s,
                                     u"Romero"_s, u"Serrano"_s,    u"Molina"_s,    u"Castro"_s,   u"Otero"_s,
                                     u"Lozano"_s, u"Cañizares"_s,  u"Prieto"_s,    u"Zabala"_s,   u"Iglesias"_s};

const std::vector<QString> ciudades{u"Madrid"_s, u"Valencia"_s, u"Sevilla"_s,   u"Zaragoza"_s,
                                    u"Málaga"_s, u"Bilbao"_s,   u"A Coruña"_s,  u"Logroño"_s,
                                    u"Cádiz"_s,  u"Girona"_s,   u"Salamanca"_s, u"Almería"_s};

const std::vector<QString> empresas{u"Talleres Peñalara"_s,       u"Clínica Dental Ñ"_s,  u"Fontanería Hnos. Ruiz"_s,
                                    u"Gestoría Campos & Hijos"_s, u"Librería La Rueda"_s, u"Panadería El Obrador"_s};

QString movilAlAzar(Azar &a)
{
    const auto n = u"6"_s + a.cifras(8);
    switch (a.entero(0, 2)) {
    case 0:
        return n.left(3) + u' ' + n.mid(3, 2) + u' ' + n.mid(5, 2) + u' ' + n.mid(7);
    case 1:
        return u"+34 "_s + n.left(3) + u' ' + n.mid(3, 3) + u' ' + n.mid(6);
    default:
        return u"+34"_s + n;
    }
}

QString sinAdornos(const QString &texto)
{
    QString salida;
    for (const QChar c : texto.toLower().normalized(QString::NormalizationForm_D))
        if (c.unicode() < 128 && c.isLetterOrNumber())
            salida += c;
    return salida;
}

/// The people of the first chats: fixed, so that what is seen on screen and in the tests does not move with the seed.
std::vector<Persona> losDeSiempre()
{
    std::vector<Persona> p;
    p.push_back({u"Lucía"_s,
                 u"García Núñez"_s,
                 {},
                 u"Luci"_s,
                 u"Madrid"_s,
                 u"Alérgica a los frutos secos"_s,
                 {u"+34 600 11 22 33"_s},
                 {u"lucia.garcia@correo.example"_s},
                 642'000'000});
    p.push_back({u"Mamá"_s, {}, {}, {}, u"Logroño"_s, {}, {u"+34 611 223 344"_s, u"941 20 11 02"_s}, {}, -310'000'000});
    p.push_back({u"Íñigo"_s,
                 u"Etxeberria Zabala"_s,
                 {},
                 {},
                 u"Bilbao"_s,
                 {},
                 {u"622 334 455"_s},
                 {u"inigo@correo.example"_s, u"i.etxeberria@trabajo.example"_s},
                 512'000'000});
    p.push_back({u"Niño/a"_s,
                 u"(cole)"_s,
                 {},
                 {},
                 u"Madrid"_s,
                 u"Aula 3 años; recoger a las 16:30"_s,
                 {u"633445566"_s},
                 {},
                 0});
    p.push_back({u"👩‍🦰 Begoña"_s,
                 u"🌻"_s,
                 {},
                 u"Bego"_s,
                 u"Valencia"_s,
                 {},
                 {u"+34644556677"_s},
                 {u"bego@correo.example"_s},
                 0});
    p.push_back({u"Yayo"_s, u"Ramón"_s, {}, {}, u"Cádiz"_s, {}, {u"655 66 77 88"_s}, {}, -1'150'000'000});
    p.push_back({{},
                 {},
                 u"Clínica Dental Ñ"_s,
                 {},
                 u"Madrid"_s,
                 u"Cita cada seis meses"_s,
                 {u"910 55 66 77"_s},
                 {u"citas@clinica.example"_s},
                 0});
    p.push_back(
        {u"Óscar"_s, u"Peña; Ortiz"_s, u"Talleres \"Peñalara\""_s, {}, u"Madrid"_s, {}, {u"666 778 899"_s}, {}, 0});
    p.push_back(
        {u"Fátima"_s, u"Benali"_s, {}, {}, u"Málaga"_s, {}, {u"+212 661 234 567"_s}, {u"fatima@correo.example"_s}, 0});
    p.push_back({u"María del Carmen Inmaculada Concepción de los Dolores"_s,
                 u"Fernández de Córdoba y Álvarez de Toledo-Ponce de León Bobadilla del Sacro Monte Mediterráneo"_s,
                 u"Asociación de Vecinos y Amigos de la Plaza Mayor y sus Calles Adyacentes"_s,
                 {},
                 u"Salamanca"_s,
                 {},
                 {u"677889900"_s},
                 {},
                 0});
    p.push_back({u"Wei"_s, u"Chen 陈伟"_s, {}, {}, u"Madrid"_s, {}, {u"688 99 00 11"_s}, {}, 0});
    p.push_back({u"يوسف"_s, u"Youssef"_s, {}, {}, u"Almería"_s, {}, {u"699 00 11 22"_s}, {}, 0});
    p.push_back(
        {{}, {}, {}, {}, {}, u"Sin nombre: apuntado en la playa"_s, {u"600 000 000"_s, u"600 000 000"_s}, {}, 0});
    p.push_back({u"Correo"_s, u"en el teléfono"_s, {}, {}, u"Girona"_s, {}, {u"raro@correo.example"_s}, {}, 0});
    return p;
}

} // namespace

std::vector<Persona> inventaGente(const OpcionesContenido &opciones)
{
    Azar a(opciones.semilla, "gente");
    auto gente = losDeSiempre();
    const size_t cuantos = opciones.tamano == OpcionesContenido::Minimo   ? 24
                           : opciones.tamano == OpcionesContenido::Normal ? 140
                                                                          : 1500;
    while (gente.size() < cuantos) {
        Persona p;
        p.nombre = a.uno(nombres);
        p.apellidos = a.uno(apellidos) + u' ' + a.uno(apellidos);
        p.ciudad = a.uno(ciudades);
        p.telefonos << movilAlAzar(a);
        if (a.si(25))
            p.telefonos << u"9"_s + a.cifras(8);
        if (a.si(60))
            p.correos << sinAdornos(p.nombre) + u'.' + sinAdornos(p.apellidos.section(u' ', 0, 0)) + a.cifras(2) +
                             u"@correo.example"_s;
        if (a.si(15))
            p.empresa = a.uno(empresas);
        if (a.si(30))
            p.cumple = a.entero(-500'000'000, 1'100'000'000);
        if (a.si(8))
            p.nota = u"Lo conocí en "_s + a.uno(ciudades) + u".\nLlamar por la tarde."_s;
        gente.push_back(p);
    }
    return gente;
}

} // namespace simulado
