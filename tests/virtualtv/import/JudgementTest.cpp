// SPDX-License-Identifier: MIT
// Lists that don't name the encoding of their names, in languages whose names fit both ISO 6937 and ISO 8859-15.
#include <gtest/gtest.h>

#include <iconv.h>

#include <algorithm>
#include <random>
#include <set>

#include "text/Units.h"
#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using Names = std::vector<std::string>;  // in UTF-8

constexpr const char* iso6937 = "ISO_6937";
constexpr const char* iso8859 = "ISO-8859-15";

/// The name in an encoding; null when the encoding lacks one of its characters.
std::optional<std::string> encoded(std::string name, const char* encoding) {
  const iconv_t converter = iconv_open(encoding, "UTF-8");
  std::string bytes(name.size() * 2, '\0');
  char* in = name.data();
  char* out = bytes.data();
  std::size_t left = name.size();
  std::size_t room = bytes.size();
  const bool done = iconv(converter, &in, &left, &out, &room) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  bytes.resize(bytes.size() - room);
  return done ? std::optional(bytes) : std::nullopt;
}

bool isAscii(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

/// A language, and typical names in it.
struct Language {
  const char* name;
  Names names;
};

const std::vector<Language>& languages() {  // NOLINT(readability-function-size): a table
  static const std::vector<Language> all{
      {"German",
       {"Bayerisches Fernsehen Süd",
        "ARD-alpha für Schüler",
        "Österreich Eins",
        "Kärnten",
        "Straße & Verkehr",
        "MÜNCHEN TV",
        "LÄNDERSPIEGEL",
        "Fußball live",
        "SÜDWEST",
        "Köln regional",
        "Thüringen Nord",
        "Ländermagazin",
        "Hören und Sehen",
        "Jugend & Märchen",
        "Übertragung",
        "Ärzte-TV",
        "Gemütlich",
        "HÄUSER & GÄRTEN",
        "Grüne Welle",
        "ÖSTERREICH HEUTE",
        "Volksmusik böhmisch",
        "Schönes Leben",
        "Größte Hits",
        "Tägliche Themen",
        "Weiß-Blau",
        "BÜRGERFUNK"}},
      {"French",
       {"Télé Découverte",
        "École ouverte",
        "CINÉMA CLASSIQUE",
        "Chaîne météo",
        "NOËL EN FAMILLE",
        "Île-de-France",
        "Histoire & Mémoire",
        "À la une",
        "Théâtre",
        "FRANÇAIS DU MONDE",
        "Côte d'Azur",
        "Première",
        "ÉTÉ SPORT",
        "Évasion",
        "Cuisine à la française",
        "Série Club",
        "Voilà",
        "Êtes-vous là",
        "Où aller",
        "Goût du jour",
        "Août",
        "Ça marche",
        "RTÉ",
        "L'Équipe",
        "Fenêtre ouverte",
        "PÊCHE",
        "MÈRE ET ENFANT",
        "Garçons",
        "Fréquence Paris",
        "Région"}},
      {"Swedish", {"Äntligen hemma",     "Kanal Åtta", "Vädret",         "Öresund",   "SVERIGE PÅ NÄTET",
                   "Nyheter från Skåne", "Göteborg",   "Malmö",          "Världen",   "Åland",
                   "ÖSTERSUND",          "Sjöfart",    "Barnens lördag", "Håll tätt", "Fågelsång",
                   "Blå tåget",          "Påsk",       "Norrköping",     "Västerås",  "Kärlek",
                   "Trädgård",           "Äventyr",    "ÅRETS HÄST",     "Länsnytt",  "Tävling"}},
      {"Spanish",
       {"España Directo",
        "Televisión",
        "Canal Español",
        "NIÑOS",
        "Música",
        "Galería",
        "AÑO NUEVO",
        "Cataluña",
        "Señal Norte",
        "Andalucía",
        "TELEVISIÓN CANARIA",
        "León",
        "Córdoba",
        "Málaga",
        "Información",
        "MAÑANA",
        "Corazón",
        "Árbol",
        "Ñandú",
        "Éxitos",
        "Último",
        "Vía Digital",
        "Película",
        "ACCIÓN",
        "Pequeños",
        "Cádiz",
        "CORUÑA",
        "Qué pasa",
        "Tú eliges"}},
      {"Danish", {"Søndag",   "København",  "NYHEDER PÅ DANSK", "Ærø",    "Østjylland",  "Færøerne",
                  "Børn",     "FÅRUP",      "Ålborg",           "Næste",  "Kærlighed",   "SØNDERJYLLAND",
                  "Grønland", "Fødselsdag", "Håndbold",         "Læge",   "Tøj og mode", "Rød",
                  "ÆBLEMARK", "Hjørring",   "Nørrebro",         "Træning"}},
      {"Italian",
       {"Città Viva", "Perché no", "Più Musica", "UNIVERSITÀ", "È tempo", "Caffè", "Novità", "QUALITÀ", "Così",
        "Verità", "Libertà", "Laggiù", "Gioventù", "LUNEDÌ", "Però", "Martedì", "VIRTÙ", "Ragù"}},
      {"Portuguese",
       {"Televisão",       "Notícias",   "Ação",       "São Paulo",   "EDUCAÇÃO", "Câmara", "Saúde",  "Coração",
        "Amanhã",          "INFORMAÇÃO", "Fé e Razão", "Açores",      "Opiniões", "Você",   "Música", "Atlântico",
        "FUTEBOL À NOITE", "Três",       "Avós",       "Lisboa Manhã"}},
      {"Czech", {"Česká televize", "Óčko",           "Příběhy",    "ČT Déčko",
                 "Šlágr",          "Televize Žďár",  "PŘÍRODA",    "Dvojka v sobotu",
                 "Nový čas",       "ZPRÁVY",         "Děti",       "Mňam",
                 "Tučňák",         "Kino Barrandov", "Vysočina",   "RÁDIO ČESKÝ RÁJ",
                 "Hlášení",        "Různé",          "Pátek",      "Ústí nad Labem",
                 "Žurnál",         "ŠKODA",          "Úžasný svět"}},
      {"Polish",
       {"Wiadomości",
        "Łódź",
        "Śląsk",
        "Polonia Źródło",
        "GDAŃSK",
        "Kraków",
        "Białystok",
        "TORUŃ",
        "Świat",
        "Miłość",
        "Żywioł",
        "Dzień dobry",
        "WISŁA",
        "Jedynka",
        "Książka",
        "Pogoda na żywo",
        "ŁÓDŹ",
        "Zdjęcia",
        "Muzyka i taniec śpiew",
        "Część",
        "Łomża",
        "Państwo",
        "Ćwiczenia"}},
      {"Hungarian",
       {"Őrség", "Magyar Televízió", "Életmód", "HÍRADÓ", "Műsor", "Gyerekeknek", "Győr", "Székesfehérvár", "Tűz",
        "FŐVÁROS", "Időjárás", "Öt perc", "Üzenet", "Zöld", "Kívánság", "Szülők", "ŐSZI MŰSOR"}},
      {"Turkish",
       {"Haber Türk", "İstanbul", "Müzik", "ÇOCUK", "Türkiye", "Güneş", "Şehir", "Doğa", "Kanal Yedi Avrupa İçin",
        "SPOR ŞÖLENİ", "Gündüz", "TÜRKÜ", "Işık", "Köy", "Beşiktaş", "Dünya"}},
  };
  return all;
}

/// The names as a VDR list, each of them also as the name of a group.
std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  int service = 0;
  for (const std::string& name : names) {
    VdrLine line;
    line.name = name;
    line.service = std::to_string(++service);
    list += ':' + name + '\n' + line.text();
  }
  return list;
}

/// Reads a list of these names. @return their names as read, in UTF-8.
Names readBack(const std::vector<std::string>& names) {
  Names read;
  for (const auto& service : readVdr(listOf(names)).services) {
    read.push_back(virtualtv::text::toUtf8(name(service)));
    EXPECT_EQ(service.group, read.back());
  }
  return read;
}

/// The names that the encoding can express and that are not plain ASCII.
Names writable(const Names& names, const char* encoding) {
  Names able;
  for (const std::string& name : names) {
    if (!isAscii(name) && encoded(name, encoding)) able.push_back(name);
  }
  return able;
}

/// The number of lists, out of `rounds` random ones of `size` names, that are not read as they were written.
int misread(const Names& names, const char* encoding, std::size_t size, int rounds, std::mt19937& random) {
  int wrong = 0;
  for (int round = 0; round < rounds; ++round) {
    Names some = names;
    std::shuffle(some.begin(), some.end(), random);
    some.resize(std::min(size, some.size()));
    std::vector<std::string> bytes;
    for (const std::string& name : some) bytes.push_back(*encoded(name, encoding));
    if (readBack(bytes) != some) ++wrong;
  }
  return wrong;
}

TEST(ListOfNames, IsReadInTheEncodingThatItIsInAsAWhole) {
  for (const unsigned seed : {20240229U, std::random_device{}()}) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (const Language& language : languages()) {
      for (const char* encoding : {iso6937, iso8859}) {
        const Names names = writable(language.names, encoding);
        if (names.size() < 12) continue;
        EXPECT_EQ(misread(names, encoding, 12, 40, random), 0) << language.name << " in " << encoding;
      }
    }
  }
}

TEST(ListOfNames, OfManyLanguagesIsReadAsAWhole) {
  std::mt19937 random(11);
  for (const char* encoding : {iso6937, iso8859}) {
    Names names;
    for (const Language& language : languages()) {
      for (const std::string& name : writable(language.names, encoding)) names.push_back(name);
    }
    EXPECT_EQ(misread(names, encoding, 20, 50, random), 0) << encoding;
  }
}

/// Reads a list with names of these bytes. @return the names, in UTF-8.
Names read(std::initializer_list<std::string> names) {
  return readBack(names);
}

TEST(ListOfNames, KeepsCapitalsOfIso8859ThatWouldBeAccentsOfIso6937) {
  EXPECT_EQ(read({"L\xC4NDERSPIEGEL"}), Names{"LÄNDERSPIEGEL"});
  EXPECT_EQ(read({"NO\xCBL"}), Names{"NOËL"});
  EXPECT_EQ(read({"\xC4ntligen"}), Names{"Äntligen"});
  EXPECT_EQ(read({"R\xCDO", "S\xC3O PAULO", "ROM\xC2NIA", "MA\xCFS"}), (Names{"RÍO", "SÃO PAULO", "ROMÂNIA", "MAÏS"}));
}

TEST(ListOfNames, ReadsCapitalsThatFitBothAsItsOtherNamesAre) {
  EXPECT_EQ(read({"SE\xC4NAL", "Televisi\xC2on"}), (Names{"SEÑAL", "Televisión"}));
  EXPECT_EQ(read({"L\xC4NDER", "Televisi\xC2on"}), (Names{"LÑDER", "Televisión"}));
  EXPECT_EQ(read({"L\xC4NDER", "f\xFCr alle"}), (Names{"LÄNDER", "für alle"}));
}

TEST(ListOfNames, ReadsLettersThatAreSmallInBothAsItsOtherNamesAre) {
  EXPECT_EQ(read({"Gro\xFB", "\xC8Osterreich"}), (Names{"Groß", "Österreich"}));
  EXPECT_EQ(read({"Go\xFBt", "Th\xE9\xE2tre"}), (Names{"Goût", "Théâtre"}));
}

TEST(ListOfNames, HasNamesThatAreNoIso6937InIso8859) {
  EXPECT_EQ(read({"Televisi\xC2on", "Informaci\xC2on", "Acci\xC2on", "Caf\xE5", "M\xC4"}),
            (Names{"Televisión", "Información", "Acción", "Cafå", "MÄ"}));
}

TEST(ListOfNames, IsNotJudgedByNamesInUtf8NorByThoseThatTellTheirEncoding) {
  EXPECT_EQ(read({"Télé", "L\xC4NDER"}), (Names{"Télé", "LÄNDER"}));
  EXPECT_EQ(read({"\x0BT\xC2"
                  "el\xC2"
                  "e",
                  "\x0BT\xC2"
                  "el\xC2"
                  "e",
                  "L\xC4NDER"}),
            (Names{"TÂelÂe", "TÂelÂe", "LÄNDER"}));
  EXPECT_EQ(read({"\x05T\xFCrk", "Televisi\xC2on"}), (Names{"Türk", "Televisión"}));
}

TEST(ListOfNames, IsNotOutvotedByASingleLongName) {
  std::string odd;
  for (int at = 0; at < 1000; ++at) odd += "\xF6";
  const Names names = read({"Televisi\xC2on", "Informaci\xC2on", "El Ni\xC4no", odd});
  EXPECT_EQ(names[0], "Televisión");
  EXPECT_EQ(names[1], "Información");
}

TEST(ListOfNames, MayHaveTradeMarksAndApostrophesOfIso6937) {
  EXPECT_EQ(read({"Sky\xD4",
                  "T\xC2"
                  "el\xC2"
                  "e",
                  "L\xB9"
                  "Equipe"}),
            (Names{"Sky™", "Télé", "L’Equipe"}));
}

}  // namespace
}  // namespace import_tests
