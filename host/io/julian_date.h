// Days since noon of 1 January 4713 BC, as drawings count time.
#pragma once

struct JulianNow {
    double local = 0, universal = 0;
};

JulianNow julianNow();
