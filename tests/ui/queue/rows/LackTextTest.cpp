#include "ui/queue/rows/LackText.h"

#include "fixtures/Languages.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

struct LackCase
{
    GroupLack lack;
    const char* inEnglish;
    const char* inItalian;
};

const LackCase lackCases[] = {
    {{}, "", ""},
    {{{{3, 3}}, {}, 42, 2},
     "Part 3 of 42 failed; 2 recovery volumes can rebuild it",
     "Parte 3 di 42 fallita; 2 volumi di recupero possono ricostruirla"},
    {{{{3, 3}}, {}, 42, 1},
     "Part 3 of 42 failed; 1 recovery volume can rebuild it",
     "Parte 3 di 42 fallita; 1 volume di recupero può ricostruirla"},
    {{{{3, 3}, {7, 7}}, {}, 42, 2},
     "Parts 3 and 7 of 42 failed; 2 recovery volumes can rebuild them",
     "Parti 3 e 7 di 42 fallite; 2 volumi di recupero possono ricostruirle"},
    {{{{3, 3}, {7, 7}}, {}, 42, 1},
     "Parts 3 and 7 of 42 failed; only 1 recovery volume for 2 parts",
     "Parti 3 e 7 di 42 fallite; solo 1 volume di recupero per 2 parti"},
    {{{{3, 8}}, {}, 42, 2},
     "Parts 3–8 of 42 failed; only 2 recovery volumes for 6 parts",
     "Parti 3–8 di 42 fallite; solo 2 volumi di recupero per 6 parti"},
    {{{{3, 3}, {5, 5}, {7, 7}, {9, 11}}, {}, 42, 0},
     "6 of 42 parts failed; nothing can rebuild them",
     "6 di 42 parti fallite; nulla può ricostruirle"},
    {{{{3, 3}}, {}, 0, 0}, "Part 3 failed; nothing can rebuild it", "Parte 3 fallita; nulla può ricostruirla"},
    {{{{1, 1}}, {}, 42, 3},
     "Part 1 of 42 failed; nothing is rebuilt without the first part",
     "Parte 1 di 42 fallita; senza la prima parte non si ricostruisce nulla"},
    {{{}, {{3, 4}}, 42, 0}, "2 parts not in the list", "2 parti non nella lista"},
    {{{}, {{3, 3}}, 42, 0}, "1 part not in the list", "1 parte non nella lista"},
    {{{}, {{3, 4}}, 42, 1}, "2 parts not in the list", "2 parti non nella lista"},
    {{{}, {{1, 1}}, 42, 1}, "1 part not in the list", "1 parte non nella lista"},
    {{{}, {{3, 3}}, 42, 1},
     "1 part not in the list, 1 recovery volume can rebuild it",
     "1 parte non nella lista, 1 volume di recupero può ricostruirla"},
    {{{{5, 5}}, {{3, 4}}, 42, 3},
     "Part 5 of 42 failed, 2 parts not in the list; 3 recovery volumes can rebuild them",
     "Parte 5 di 42 fallita, 2 parti non nella lista; 3 volumi di recupero possono ricostruirle"},
};

TEST(LackText, TellsWhatIsLackingAndWhatCanBeDone)
{
    for (const LackCase& told : lackCases) {
        EXPECT_EQ(lackText(told.lack, fixtures::english).toStdString(), told.inEnglish);
        EXPECT_EQ(lackText(told.lack, fixtures::italian).toStdString(), told.inItalian);
    }
}

TEST(LackText, NamesInDetailWhatTheLineOnlyCounts)
{
    const GroupLack few{{{3, 3}}, {}, 42, 2};
    EXPECT_EQ(lackDetail(few, fixtures::english), u"");
    const GroupLack many{{{3, 3}, {5, 5}, {7, 7}, {9, 11}}, {{20, 22}}, 42, 0};
    EXPECT_EQ(lackDetail(many, fixtures::english), u"Failed: 3, 5, 7 and 9–11\nNot in the list: 20–22");
    EXPECT_EQ(lackDetail(many, fixtures::italian), u"Fallite: 3, 5, 7 e 9–11\nNon nella lista: 20–22");
}

TEST(LackText, ADetailHasAnEnd)
{
    GroupLack lack;
    for (qint64 number = 2; number < 4000; number += 2)
        lack.missing.push_back({number, number});
    EXPECT_TRUE(lackDetail(lack, fixtures::english).endsWith(u"58 and 60 …"));
}

} // namespace
} // namespace vormel
