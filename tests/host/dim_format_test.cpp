// What dimensions say.
#include "host/db/dim_format.h"

#include <gtest/gtest.h>

namespace {

using Kind = DimMeasure::Kind;
using Change = void (*)(VcDbDimVars&);

struct TextCase {
    const char* name;
    double value;
    Kind kind;
    Change change;
    const char* override;
    const char* above;
    const char* below = "";
};

void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }

constexpr double kRightAngle = 1.57079632679489661923;

// clang-format off
const TextCase kTexts[] = {
    {"FourPlacesAtFirst", 12.5, Kind::Length, [](VcDbDimVars&) {}, "", "12.5000"},
    {"TrailingZerosLeftOut", 12.5, Kind::Length, [](VcDbDimVars& v) { v.dimzin = 8; }, "", "12.5"},
    {"LeadingZeroLeftOut", 0.25, Kind::Length, [](VcDbDimVars& v) { v.dimzin = 12; }, "", ".25"},
    {"DecimalComma", 12.5, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 2; v.dimdsep = ','; }, "", "12,50"},
    {"CommaWithPlacesOfRounding", 12.37, Kind::Length, [](VcDbDimVars& v) { v.dimrnd = 0.25; v.dimdec = 2; }, "", "12.25"},
    {"Factor", 12.5, Kind::Length, [](VcDbDimVars& v) { v.dimlfac = 2; v.dimdec = 0; }, "", "25"},
    {"NegativeFactorIsForSheets", 12.5, Kind::Length, [](VcDbDimVars& v) { v.dimlfac = -2; v.dimdec = 1; }, "", "12.5"},
    {"Suffix", 3, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = " mm"; }, "", "3 mm"},
    {"PrefixAndSuffix", 3, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = "ca. <> mm"; }, "", "ca. 3 mm"},
    {"Radius", 3, Kind::Radius, [](VcDbDimVars& v) { v.dimdec = 0; }, "", "R3"},
    {"Diameter", 3, Kind::Diameter, [](VcDbDimVars& v) { v.dimdec = 0; }, "", "%%c3"},
    {"APrefixTakesThePlaceOfR", 3, Kind::Radius, [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = "rad <>"; }, "", "rad 3"},
    {"ASuffixDoesNot", 3, Kind::Radius, [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = "<> TYP"; }, "", "R3 TYP"},
    {"Override", 3, Kind::Length, [](VcDbDimVars&) {}, "see note", "see note"},
    {"OverrideWithMeasurement", 3, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; }, "2x<> EQ", "2x3 EQ"},
    {"OneBlankIsNothing", 3, Kind::Length, [](VcDbDimVars&) {}, " ", ""},
    {"TwoHalves", 3, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; }, "<>\\XTYP", "3", "TYP"},
    {"HalvesByTheSuffix", 3, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = "<> A\\XB"; }, "", "3 A", "B"},
    {"EqualTolerances", 10, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimtdec = 2; v.dimtol = 1; v.dimtp = v.dimtm = 0.05; }, "", "10%%p0.05"},
    {"SmallTolerances", 10, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimtdec = 1; v.dimtol = 1; v.dimtp = v.dimtm = 0.5; v.dimtfac = 0.5; }, "", "10{\\H0.5x;%%p0.5}"},
    {"StackedTolerances", 10, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimtdec = 1; v.dimtol = 1; v.dimtp = 0.2; v.dimtm = 0.1; v.dimtfac = 0.7; }, "", "10{\\H0.7x;\\S+0.2^ -0.1;}"},
    {"AZeroToleranceHasNoSign", 10, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimtdec = 1; v.dimtol = 1; v.dimtp = 0.2; }, "", "10{\\H1x;\\S+0.2^  0.0;}"},
    {"Limits", 10, Kind::Length,
     [](VcDbDimVars& v) { v.dimtdec = 1; v.dimlim = 1; v.dimtp = 0.2; v.dimtm = 0.1; }, "", "{\\H1x;\\S10.2^ 9.9;}"},
    {"ToleranceInTheMiddleOfTheLine", 10, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimtolj = 1; }, "", "\\A1;10"},
    {"AlternateUnits", 1, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; }, "", "1 [25.4]"},
    {"AlternateSuffix", 1, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; v.dimapost = " mm"; }, "", "1 [25.4 mm]"},
    {"AlternateWhereTheOverrideWantsIt", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; }, "[] or <>", "[25.4] or 1"},
    {"AlternateUnitsBelowByThePrimarySuffix", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; v.dimpost = "<> in\\X"; v.dimapost = " mm"; }, "", "1 in", "[25.4 mm]"},
    {"AlternateUnitsBelowByTheirPrefix", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; v.dimapost = "\\X[] mm"; }, "", "1", "[25.4 mm]"},
    {"BelowIsSaidOnce", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 1; v.dimpost = "\\X"; v.dimapost = "\\X"; }, "", "1", "[25.4]"},
    {"AFurtherBelowIsALine", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimpost = "<>\\Xa"; }, "<>\\Xb", "1", "a\\Pb"},
    {"SubUnits", 0.96, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; v.dimpost = "ca. <> m"; }, "", "ca. 96cm"},
    {"SubUnitsByAFactor", 0.96, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = " mm"; v.dimmzf = 1000; }, "", "960 mm"},
    {"SubUnitsOnlyBelowOne", 1, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; v.dimpost = " m"; }, "", "1 m"},
    {"SubUnitsAfterTheFactorOfLengths", 960, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; v.dimlfac = 0.001; }, "", "96cm"},
    {"SubUnitsAfterRounding", 0.96, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 1; v.dimmzs = "cm"; v.dimrnd = 0.05; }, "", "95.0cm"},
    {"RoundedUpToOneHasNoSubUnits", 0.96, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; v.dimrnd = 0.1; }, "", "1"},
    {"NothingHasNoSubUnits", 0, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; }, "", "0"},
    {"SubUnitsOfARadius", 0.5, Kind::Radius, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; }, "", "R50cm"},
    {"SubUnitsKeepWhatStandsBelow", 0.5, Kind::Length, [](VcDbDimVars& v) { v.dimdec = 0; v.dimmzs = "cm"; v.dimpost = " m\\XTYP"; }, "", "50cm", "TYP"},
    {"SubUnitsOfFractionsThereAreNone", 0.5, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 5; v.dimfrac = 2; v.dimmzs = "cm"; }, "", "1/2"},
    {"TolerancesInSubUnits", 0.96, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = v.dimtdec = 0; v.dimmzs = "cm"; v.dimtol = 1; v.dimtp = v.dimtm = 0.01; }, "", "96%%p1cm"},
    {"AlternateSubUnits", 20, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltd = 0; v.dimaltf = 0.001; v.dimapost = " m"; v.dimaltmzs = " cm"; }, "", "20 [2 cm]"},
    {"AngleHasNoSubUnits", 0.5, Kind::Angle, [](VcDbDimVars& v) { v.dimmzs = "cm"; }, "", "29%%d"},
    {"FractionsInTheHeightOfTolerances", 0.75, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 5; v.dimtfac = 0.7; }, "", "{\\H0.7x;\\S3/4;}"},
    {"AngleToleranceWithoutZeros", kRightAngle, Kind::Angle,
     [](VcDbDimVars& v) { v.dimtol = 1; v.dimtp = v.dimtm = 0.5; v.dimtdec = 2; v.dimtzin = 8; }, "", "90%%d%%p0.5%%d"},
    {"FractionSlanted", 0.75, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 5; v.dimfrac = 1; }, "", "{\\H1x;\\S3#4;}"},
    {"FractionInTheLine", 1.75, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 5; v.dimfrac = 2; }, "", "1 3/4"},
    {"FeetAndInches", 18.5, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 1; }, "", "1'-6{\\H1x;\\S1/2;}\""},
    {"FeetAndInchesWhole", 24, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 4; v.dimzin = 0; }, "", "2'"},
    {"FeetAndInchesWithZeroInches", 24, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 4; v.dimzin = 1; }, "", "2'-0\""},
    {"InchesAlone", 6.75, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 2; v.dimfrac = 2; }, "", "6 3/4\""},
    {"InchesWithZeroFeet", 6.75, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 2; v.dimfrac = 2; v.dimzin = 2; }, "", "0'-6 3/4\""},
    {"FeetAndInchesRoundedUp", 23.99, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 4; v.dimzin = 0; }, "", "2'"},
    {"FeetAndInchesToMultiples", 18.6, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 1; v.dimrnd = 1; v.dimfrac = 2; }, "", "1'-7\""},
    {"FeetAndInchesSlanted", 18.5, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 1; v.dimfrac = 1; }, "", "1'-6{\\H1x;\\S1#2;}\""},
    {"EngineeringInches", 18.5, Kind::Length, [](VcDbDimVars& v) { v.dimlunit = 3; v.dimdec = 2; }, "", "1'-6.50\""},
    {"FeetAndInchesTolerance", 18.5, Kind::Length,
     [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 1; v.dimfrac = 2; v.dimtol = 1; v.dimtp = v.dimtm = 0.125; v.dimtdec = 3; }, "", "1'-6 1/2\"%%p1/8\""},
    {"FeetAndInchesStackedTolerance", 18.5, Kind::Length,
     [](VcDbDimVars& v) { v.dimlunit = 4; v.dimdec = 1; v.dimfrac = 2; v.dimtol = 1; v.dimtp = 0.125; v.dimtm = 0.25; v.dimtdec = 3; }, "",
     "1'-6 1/2\"{\\H1x;\\S+1\\/8\"^ -1\\/4\";}"},
    {"FractionsAsLimits", 1.5, Kind::Length,
     [](VcDbDimVars& v) { v.dimlunit = 5; v.dimlim = 1; v.dimtp = 0.25; v.dimtm = 0.5; v.dimtdec = 2; }, "", "{\\H1x;\\S1 3\\/4^ 1;}"},
    {"AlternateFeetAndInchesOfMillimetres", 457.2, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimalt = 1; v.dimaltu = 6; v.dimaltd = 1; v.dimaltf = 1 / 25.4; }, "", "457 [1'-6\"]"},
    {"AlternateTolerance", 1, Kind::Length,
     [](VcDbDimVars& v) { v.dimdec = 0; v.dimtdec = 1; v.dimtol = 1; v.dimtp = v.dimtm = 0.5; v.dimalt = 1; v.dimaltd = 0; v.dimalttd = 1; }, "", "1%%p0.5 [25%%p12.7]"},
    {"AlternateLimits", 10, Kind::Length,
     [](VcDbDimVars& v) { v.dimtdec = 0; v.dimlim = 1; v.dimtp = v.dimtm = 1; v.dimalt = 1; v.dimaltf = 10; v.dimalttd = 0; }, "",
     "{\\H1x;\\S11^ 9;} [{\\H1x;\\S110^ 90;}]"},
    {"Degrees", kRightAngle, Kind::Angle, [](VcDbDimVars&) {}, "", "90%%d"},
    {"DegreesAsLengths", kRightAngle / 4, Kind::Angle, [](VcDbDimVars& v) { v.dimadec = -1; v.dimdec = 2; }, "", "22.50%%d"},
    {"DegreesAndMinutes", kRightAngle / 4, Kind::Angle, [](VcDbDimVars& v) { v.dimaunit = 1; v.dimadec = 2; }, "", "22%%d30'"},
    {"Grads", kRightAngle, Kind::Angle, [](VcDbDimVars& v) { v.dimaunit = 2; }, "", "100g"},
    {"NoAlternateForAngles", kRightAngle, Kind::Angle, [](VcDbDimVars& v) { v.dimalt = 1; }, "", "90%%d"},
    {"AngleTolerance", kRightAngle, Kind::Angle, [](VcDbDimVars& v) { v.dimtol = 1; v.dimtp = v.dimtm = 2; v.dimtdec = 0; }, "", "90%%d%%p2%%d"},
};
// clang-format on

class DimTexts : public testing::TestWithParam<TextCase> {};

TEST_P(DimTexts, SayWhatTheStyleWants)
{
    const TextCase& c = GetParam();
    VcDbDimVars vars;
    vars.dimtolj = 0;
    c.change(vars);
    const DimText text = dimText({c.value, c.kind}, vars, c.override, false);
    EXPECT_EQ(text.above, c.above);
    EXPECT_EQ(text.below, c.below);
}

INSTANTIATE_TEST_SUITE_P(All, DimTexts, testing::ValuesIn(kTexts), [](const auto& info) { return info.param.name; });

TEST(DimTexts, ANegativeFactorCountsOnSheets)
{
    VcDbDimVars vars;
    vars.dimlfac = -2;
    EXPECT_EQ(linearFactor(vars, true), 2);
    EXPECT_EQ(linearFactor(vars, false), 1);
}

}
