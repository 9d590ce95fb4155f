#include "modeldb/schema/origin_tables.h"

namespace modeldb {

std::span<const TableDefinition> origin_tables() {
  constexpr ColumnType kInteger = ColumnType::kInteger;
  constexpr ColumnType kReal = ColumnType::kReal;
  constexpr ColumnType kText = ColumnType::kText;
  static const TableDefinition tables[] = {
      // The input decks that were imported. Checksum is the SHA-256 of the file, ImportedAt the
      // time in UTC.
      {.name = L"Decks",
       .key = L"DeckID",
       .columns = {{L"Description", kText},
                   {L"Path", kText},
                   {L"Checksum", kText},
                   {L"ImportedAt", kText}},
       .sets = {}},
      // The steps of a deck, Number from 1. Procedure is the card that says what is solved.
      {.name = L"DeckSteps",
       .key = L"DeckStepID",
       .columns = {{L"DeckID", kInteger},
                   {L"Number", kInteger},
                   {L"Procedure", kText},
                   {L"Line", kInteger}},
       .sets = {}},
      // The cards whose data became records, and the set that these records are in: a load set or a
      // constraint set, the other one being 0. Cards that say the same in a step share a set; Line
      // is that of the first. Step is 0 ahead of the first step.
      {.name = L"SetSources",
       .key = L"SetSourceID",
       .columns = {{L"DeckID", kInteger},
                   {L"LoadSetID", kInteger},
                   {L"ConstraintSetID", kInteger},
                   {L"Step", kInteger},
                   {L"Keyword", kText},
                   {L"Parameters", kText},
                   {L"Line", kInteger}},
       .sets = {}},
      // What the column MultiplierTableID of records means: the deck's amplitudes, from 2 on. A new
      // record has 1, which like 0 stands for none.
      {.name = L"MultiplierTables",
       .key = L"MultiplierTableID",
       .columns = {{L"Description", kText}, {L"DeckID", kInteger}, {L"Line", kInteger}},
       .sets = {}},
      // What the column CoordinateSystemID of records means: the deck's transforms, from 1 on; 0 is
      // the global system. Kind is R for a rectangular and C for a cylindrical one, A and B are
      // the points that the card gives, NodeSet names the nodes that it holds for.
      {.name = L"CoordinateSystems",
       .key = L"CoordinateSystemID",
       .columns = {{L"Description", kText},
                   {L"DeckID", kInteger},
                   {L"Line", kInteger},
                   {L"Kind", kText},
                   {L"NodeSet", kText},
                   {L"Ax", kReal},
                   {L"Ay", kReal},
                   {L"Az", kReal},
                   {L"Bx", kReal},
                   {L"By", kReal},
                   {L"Bz", kReal}},
       .sets = {}},
  };
  return tables;
}

}  // namespace modeldb
