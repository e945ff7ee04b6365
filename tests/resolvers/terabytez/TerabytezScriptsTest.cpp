#include "resolvers/terabytez/TerabytezScripts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(TerabytezScripts, ReadThePageAndItsHeading)
{
    EXPECT_EQ(terabytezScripts::html(), u"document.documentElement.innerHTML");
    EXPECT_EQ(terabytezScripts::heading(), u"(document.querySelector('h1,h2')||{}).textContent||''");
}

TEST(TerabytezScripts, AskForAnElementByASelectorInQuotes)
{
    EXPECT_EQ(terabytezScripts::hasElement(u"form"_s), u"!!document.querySelector(\"form\")");
    EXPECT_EQ(terabytezScripts::hasElement(u"a[b=\"c\"]"_s), u"!!document.querySelector(\"a[b=\\\"c\\\"]\")");
}

TEST(TerabytezScripts, SubmitTheFormWithAnOperationOfItsOwnWhereItHasNone)
{
    EXPECT_EQ(terabytezScripts::submitForm().toStdString(),
              "(function(){\n    var f=document.querySelector('form[name=\"F1\"]')||document.querySelector('form');\n"
              "    if(!f)return false;\n    var hid=f.querySelectorAll('input[type=\"hidden\"]');\n"
              "    var hasOp=false;\n"
              "    for(var i=0;i<hid.length;i++){if(hid[i].name==='op'){hasOp=true;break;}}\n"
              "    if(!hasOp){\n        var n=document.createElement('input');\n"
              "        n.type='hidden';n.name='op';n.value='download2';\n"
              "        f.appendChild(n);\n    }\n    f.submit();return true;\n})();");
}

TEST(TerabytezScripts, GoToTheAccountByTheLinkOfThePageOrElseByItsAddress)
{
    EXPECT_EQ(terabytezScripts::openAccount({u"bytez.example"_s}).toStdString(),
              "(function(){\n    var a=document.querySelector('a[href*=\"/account\"]');\n"
              "    if(a){a.click();return true;}\n"
              "    window.location.href='https://bytez.example/account/';\n    return false;\n})();");
}

} // namespace
} // namespace vormel
