<?php
/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/* Takes an order for tomorrow, checks it and says thank you. Nothing is stored: it is an example. */

require_once 'waren.php';

$fehler = array();
$bestellung = array();
$name = isset($_POST['name']) ? trim($_POST['name']) : '';
$gesendet = isset($_POST['senden']);

if ($gesendet) {
    if ($name === '') {
        $fehler[] = 'Bitte sagen Sie uns Ihren Namen.';
    }

    foreach (waren() as $schluessel => $ware) {
        $stueck = isset($_POST[$schluessel]) ? (int) $_POST[$schluessel] : 0;

        if ($stueck < 0 || $stueck > 50) {
            $fehler[] = $ware['titel'] . ': 0 bis 50 Stück, bitte.';
        } elseif ($stueck > 0) {
            $bestellung[$schluessel] = $stueck;
        }
    }

    if (count($bestellung) === 0) {
        $fehler[] = 'Noch ist nichts ausgesucht.';
    }
}

$titel = 'Vorbestellen';
include 'teile/kopf.phtml';
?>

<main class="seite">
    <h1><?php echo sicher($titel); ?></h1>

    <?php if ($gesendet && count($fehler) === 0) { ?>

        <!-- The order as we understood it -->
        <p>Danke, <?php echo sicher($name); ?>! Morgen ab sechs Uhr liegt für Sie bereit:</p>

        <table>
            <thead>
                <tr>
                    <th scope="col">Ware</th>
                    <th scope="col">Stück</th>
                    <th scope="col">Preis</th>
                </tr>
            </thead>
            <tbody>
                <?php foreach (zeilen($bestellung) as $zeile) { ?>
                    <tr>
                        <td><?php echo sicher($zeile['titel']); ?></td>
                        <td><?php echo $zeile['stueck']; ?></td>
                        <td class="preis"><?php echo preis($zeile['cent']); ?></td>
                    </tr>
                <?php } ?>
            </tbody>
            <tfoot>
                <tr>
                    <th scope="row" colspan="2">Zusammen, ab 20&nbsp;€ zehn Prozent günstiger</th>
                    <td class="preis"><?php echo preis(summe($bestellung)); ?></td>
                </tr>
            </tfoot>
        </table>

    <?php } else { ?>

        <!-- The form, with what was wrong above it -->
        <?php if (count($fehler) > 0) { ?>
            <ul role="alert">
                <?php foreach ($fehler as $zeile) { ?>
                    <li><?php echo sicher($zeile); ?></li>
                <?php } ?>
            </ul>
        <?php } ?>

        <form method="post" action="bestellen.php">
            <p>
                <label for="name">Ihr Name</label>
                <input type="text" id="name" name="name" value="<?php echo sicher($name); ?>" required>
            </p>

            <?php foreach (waren() as $schluessel => $ware) { ?>
                <p>
                    <label for="<?php echo $schluessel; ?>">
                        <?php echo sicher($ware['titel']); ?>, <?php echo preis($ware['cent']); ?>
                    </label>
                    <input type="number" id="<?php echo $schluessel; ?>" name="<?php echo $schluessel; ?>" value="0" min="0" max="50">
                </p>
            <?php } ?>

            <p>
                <button class="knopf" type="submit" name="senden" value="1">Bestellen</button>
            </p>
        </form>

    <?php } ?>
</main>

<?php include 'teile/fuss.phtml'; ?>
