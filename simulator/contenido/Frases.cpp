#include "contenido/Frases.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

const std::vector<QString> lugares{u"la plaza"_s,          u"casa de tus padres"_s,
                                   u"el mercado"_s,        u"Atocha"_s,
                                   u"el bar de siempre"_s, u"la playa"_s,
                                   u"el cole"_s,           u"Lavapiés"_s,
                                   u"la oficina"_s,        u"el parque del Oeste"_s,
                                   u"Santander"_s,         u"el gimnasio"_s};
const std::vector<QString> cosas{u"la tortilla"_s, u"las entradas"_s, u"el cargador"_s, u"los billetes"_s,
                                 u"la tarta"_s,    u"las llaves"_s,   u"el informe"_s,  u"la guitarra"_s,
                                 u"los apuntes"_s, u"el paraguas"_s};
const std::vector<QString> dias{u"el lunes"_s,   u"mañana"_s,    u"el jueves"_s,
                                u"este finde"_s, u"el sábado"_s, u"pasado mañana"_s};

// "<" begins what the other party says, ">" what the owner says. @L place, @C thing, @D day, @H hour, @N number.
const std::vector<QStringList> dialogos{
    {u"<¿Quedamos @D en @L?"_s, u">¡Venga! ¿A qué hora?"_s, u"<A las @H"_s, u">Perfecto, yo llevo @C 😄"_s},
    {u">¿Has cogido @C?"_s, u"<Sí, no te preocupes"_s, u">Menos mal 😅"_s},
    {u"<Mira lo que me ha mandado tu hermana jajaja"_s, u">😂😂😂"_s, u">no puedo con ella"_s},
    {u"<Estoy llegando a @L"_s, u">Yo tardo @N minutos"_s, u"<Vale, te espero dentro"_s},
    {u">Buenos días ☀️"_s, u"<Buenos días guapa"_s, u"<¿Cómo has dormido?"_s,
     u">Fatal, el vecino otra vez con la música"_s},
    {u"<Acuérdate de lo de @D"_s, u">Apuntado"_s},
    {u"<Lista de la compra:\n- leche\n- pan\n- tomates de los buenos\n- café (¡descafeinado no!)"_s,
     u">Voy yo, salgo a las @H"_s, u"<Gracias ❤️"_s},
    {u">Te he hecho un Bizum de @N €"_s, u"<No hacía falta, mujer"_s, u">Que sí, que pagaste tú en @L"_s},
    {u"<¿Viste el partido?"_s, u">Ni me hables 🙈"_s, u"<Tres a cero…"_s},
    {u"<Me han cogido en el trabajo!!! 🎉🎉"_s, u">¡¡¡Enhorabuena!!! 🥳"_s, u">Esto hay que celebrarlo @D"_s,
     u"<En @L, invito yo"_s},
    {u">¿Llueve por ahí?"_s, u"<A cántaros ⛈️"_s, u"<Trae @C"_s},
    {u"<Te llamo luego, estoy en una reunión"_s, u">Tranquila"_s},
    {u"<¿A cuánto está el kilo de cerezas en @L?"_s, u">A @N céntimos cada una, por lo que se ve 🍒"_s},
    {u">Llego a las @H, id cenando"_s, u"<Te guardamos un plato"_s},
    {u"<El médico dice que todo bien"_s, u">Uf, qué alivio"_s, u">Un abrazo enorme"_s, u"<🤗"_s},
    {u"<¿Me pasas la foto del otro día?"_s, u">Ahora te la busco"_s, u"<La de @L, la del perro"_s},
    {u">Feliz cumpleañooos 🎂🎈"_s, u"<¡Muchas gracias! Qué ilusión"_s, u"<@N años ya, madre mía"_s},
    {u"<Precio: 12,50 € (IVA incl.) & envío <gratis> a partir de @N €"_s, u">¿Y en \"color\" azul?"_s,
     u"<Agotado; vuelve @D"_s},
    {u"<¿Nos vemos en @L o paso a buscarte?"_s, u">Pásate mejor, voy cargada con @C"_s},
    {u"<Nota: dejé [@C] en la entrada"_s, u">YO: ok, lo cojo al salir"_s},
    {u">ok"_s},
    {u"<👍🏽"_s},
    {u"<La contraseña de la wifi es la de siempre, la del gato y el año"_s, u">Jajaja vale"_s},
    {u"<¿Qué tal el viaje?"_s,
     u">Precioso. El primer día fuimos a @L y nos perdimos, el segundo llovió y acabamos jugando a las cartas en un "
     u"bar "
     "donde el dueño nos contó la historia de su abuelo, que había sido farero durante @N años. Y el tercero, "
     "por fin, sol.\n\nTengo como doscientas fotos, ya te las enseño."_s,
     u"<Qué envidia me das"_s}};

const std::vector<QString> sueltas{u"¿Quién viene @D?"_s,
                                   u"Yo puedo a las @H"_s,
                                   u"Contad conmigo 🙋🏻‍♀️"_s,
                                   u"Yo llevo @C"_s,
                                   u"jajajaja"_s,
                                   u"👏👏👏"_s,
                                   u"No llego, empezad sin mí"_s,
                                   u"¿En @L entonces?"_s,
                                   u"Tocamos a @N € por cabeza"_s,
                                   u"Qué buena tarde ayer 💛"_s,
                                   u"Mandad las fotos!!"_s,
                                   u"Perdón, me equivoqué de grupo 😳"_s,
                                   u"El finde que viene lo repetimos"_s,
                                   u"Ha llamado la tía Concha, que os manda besos"_s,
                                   u"¿Alguien sabe a qué hora abre?"_s,
                                   u"Vale 👌"_s,
                                   u"Por favor, silencio después de las doce 🙏"_s};

const std::vector<QString> empresas{
    u"Tu código de verificación es @N@N@N. No lo compartas con nadie."_s,
    u"Su pedido se entregará @D entre las @H y las 21:00. Para cambiarlo responda CAMBIO."_s,
    u"Le recordamos su cita @D a las @H. Si no puede acudir, avise con 24 horas."_s,
    u"Compra de @N,95 EUR con su tarjeta acabada en 4417 en @L."_s,
    u"Tu factura de noviembre ya está disponible: https://facturas.example/n/@N@N"_s,
    u"Mensaje del colegio: @D no habrá comedor."_s};

QString rellena(QString texto, Azar &a)
{
    texto.replace(u"@L"_s, a.uno(lugares));
    texto.replace(u"@C"_s, a.uno(cosas));
    texto.replace(u"@D"_s, a.uno(dias));
    texto.replace(u"@H"_s, u"%1:%2"_s.arg(a.entero(9, 22)).arg(a.entero(0, 3) * 15, 2, 10, QChar(u'0')));
    for (qsizetype i = texto.indexOf(u"@N"_s); i >= 0; i = texto.indexOf(u"@N"_s))
        texto.replace(i, 2, QString::number(a.entero(10, 60)));
    return texto;
}

} // namespace

std::vector<Turno> dialogo(Azar &a)
{
    std::vector<Turno> salida;
    for (const auto &linea : a.uno(dialogos))
        salida.push_back({linea.startsWith(u'>'), rellena(linea.mid(1), a)});
    return salida;
}

QString fraseDeGrupo(Azar &a)
{
    return rellena(a.uno(sueltas), a);
}

QString avisoDeEmpresa(Azar &a)
{
    return rellena(a.uno(empresas), a);
}

} // namespace simulado
