#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# jobs.sh: ten jobs of a cam designer, with mfcurve on the PATH, in the current folder.
# jobs_test.py runs it and checks every file that it writes.
set -euo pipefail

# 1. A cam that rises, dwells, returns and dwells: its document, its picture, its peaks at 120 turns a minute.
mfcurve convert --row '90,25,3-4-5-Polynomial' --row '150,25,Linear' --row '240,0,3-4-5-Polynomial' \
    --row '360,0,Linear' --over angle --name 'Gripper cam' cam.xml
mfcurve plot cam.xml -o cam.svg >pictures.txt
mfcurve peaks cam.xml --rpm 120 --format json >peaks.json

# 2. Measured points from a spreadsheet: two lines of headers, semicolons, decimal commas, CR LF, more columns.
printf 'Messung 12;;\r\nZeit;Druck;Hub\r\n0;1,013;0\r\n0,5;1,02;2,5\r\n1;1,1;4,25\r\n1,5;1,05;1\r\n' >measured.csv
mfcurve convert --points measured.csv --csv-columns Zeit,Hub --interpolation akima measured.xml
mfcurve eval measured.xml 0 0.5 1 1.5 >measured.txt

# 3. A torque over a motion result.
mfcurve convert --row '10,4,Linear' --row '50,1,Half-Cosine' --over 'Slip Speed' --drive torque torque.xml
mfcurve eval torque.xml --result 'Slip Speed' 5 30 >torque.txt

# 4. A law of one's own, written, checked and used.
mkdir -p laws
cat >laws/SegmentTypes.txt <<'LAW'
SegmentType("Soft", x, x1, y1, x2, y2)
    xbar = (x-x1)/(x2-x1);
    y = y1 + (y2-y1)*xbar^3*(10-15*xbar+6*xbar^2);
    return y;
endSegmentType
LAW
mfcurve profiles --library laws --check >laws.txt
mfcurve convert --library laws --row '90,25,Soft' --row '180,0,Soft' --over angle soft.xml
mfcurve check soft.xml --continuity 2 --cyclic >soft.txt

# 5. One value edited: the lift becomes 30, and so does the dwell after it.
mfcurve edit cam.xml higher.xml --set 1.value=30 --set 2.value=30
mfcurve info higher.xml --format json >higher.json

# 6. Two laws compared: the same cam with modified sine.
mfcurve edit cam.xml sine.xml --set 1.profile=Modified-Sine --set 3.profile=Modified-Sine
mfcurve peaks cam.xml sine.xml --format json >compared.json

# 7. Limits checked: where the acceleration is above 9 m/s^2 at 120 turns a minute.
mfcurve check cam.xml --rpm 120 --max-acceleration 9000 --format json >violations.json || test $? -eq 1

# 8. 3,600 positions for a controller.
mfcurve table cam.xml --step 0.1 --open-end --columns value --fixed 4 --no-header -o positions.txt

# 9. Four curves in one picture.
mfcurve convert --row '120,20,Cubic' --row '360,0,Half-Cosine' --over angle --name Slow slow.xml
mfcurve convert --row '60,20,4-5-6-7-Polynomial' --row '360,0,Cubic' --over angle --name Quick quick.xml
mfcurve edit cam.xml low.xml --set 1.value=10 --set 2.value=10
mfcurve plot --overlay cam.xml slow.xml quick.xml low.xml -o four.svg >>pictures.txt

# 10. Segments to points within a hundredth of a millimetre.
mfcurve export cam.xml -o points.xml --as points --tolerance 0.01 --format json >points.json
mfcurve table points.xml --samples 3601 --columns value --no-header -o points.txt
