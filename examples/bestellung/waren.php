<?php
/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/* What can be ordered, and the arithmetic around it. Amounts are whole cents. */

function waren()
{
    return array(
        'roggenmischbrot' => array('titel' => 'Roggenmischbrot', 'cent' => 420),
        'dinkelkruste' => array('titel' => 'Dinkelkruste', 'cent' => 480),
        'mohnbroetchen' => array('titel' => 'Mohnbrötchen', 'cent' => 95),
        'kaesestange' => array('titel' => 'Käsestange', 'cent' => 160),
        'butterstollen' => array('titel' => 'Butterstollen', 'cent' => 1450),
    );
}

/* Text for a page: what a visitor typed is never markup. */
function sicher($text)
{
    return htmlspecialchars($text, ENT_QUOTES, 'UTF-8');
}

/* 1450 becomes "14,50 €". */
function preis($cent)
{
    return number_format($cent / 100, 2, ',', '.') . '&nbsp;€';
}

/* The lines of an order: title, number of pieces, price of all of them. */
function zeilen($bestellung)
{
    $waren = waren();
    $zeilen = array();

    foreach ($bestellung as $schluessel => $stueck) {
        if (!isset($waren[$schluessel])) {
            continue;
        }

        $zeilen[] = array(
            'titel' => $waren[$schluessel]['titel'],
            'stueck' => $stueck,
            'cent' => $stueck * $waren[$schluessel]['cent'],
        );
    }

    return $zeilen;
}

function summe($bestellung)
{
    $summe = 0;

    foreach (zeilen($bestellung) as $zeile) {
        $summe += $zeile['cent'];
    }

    /* From 20 € on there are ten per cent off, rounded in the customer's favour. */
    if ($summe >= 2000) {
        $summe = (int) floor($summe * 0.9);
    }

    return $summe;
}
